import UIKit
import UserNotifications
import ZibMessaging

@MainActor
final class Forwarding: NSObject, UIApplicationDelegate {
  func application(
    _ application: UIApplication, didRegisterForRemoteNotificationsWithDeviceToken token: Data
  ) {
    ZibMessaging.shared.didRegisterForRemoteNotifications(deviceToken: token)
  }

  func application(
    _ application: UIApplication, didFailToRegisterForRemoteNotificationsWithError error: Error
  ) {
    ZibMessaging.shared.didFailToRegisterForRemoteNotifications(error: error)
  }
}

final class Notifications: NSObject, UNUserNotificationCenterDelegate {
  func userNotificationCenter(
    _ center: UNUserNotificationCenter, willPresent notification: UNNotification,
    withCompletionHandler completionHandler: @escaping (UNNotificationPresentationOptions) -> Void
  ) {
    completionHandler(ZibMessaging.shared.willPresent(notification))
  }

  func userNotificationCenter(
    _ center: UNUserNotificationCenter, didReceive response: UNNotificationResponse,
    withCompletionHandler completionHandler: @escaping () -> Void
  ) {
    ZibMessaging.shared.didReceive(response)
    completionHandler()
  }
}

// From Firebase's messaging(_:didReceiveRegistrationToken:).
func forward(_ token: String?) {
  if let token { ZibMessaging.shared.didReceiveRegistrationToken(token) }
}
