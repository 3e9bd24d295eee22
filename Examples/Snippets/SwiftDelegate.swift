import UserNotifications
import ZibMessaging

final class News: NSObject, ZibMessagingDelegate {
  func zibMessaging(_ messaging: ZibMessaging, didReceiveToken token: String) {
    print("token of", token.count, "characters")
  }

  func zibMessaging(
    _ messaging: ZibMessaging, didReceiveNotificationResponse response: UNNotificationResponse
  ) {
    print("tapped:", response.actionIdentifier)
  }

  func zibMessaging(_ messaging: ZibMessaging, didFailToRegisterWithError error: Error) {
    print("no push:", error)
  }
}

@MainActor
final class Model: NSObject, ZibMessagingDelegate {
  private var tokens = 0

  nonisolated func zibMessaging(_ messaging: ZibMessaging, didReceiveToken token: String) {
    Task { @MainActor in tokens += 1 }
  }
}
