// An app of UIKit's life cycle that integrates automatically. Its delegate is written as if there
// were no messaging module, but for the start and what it wants to know.

import UIKit
import UserNotifications
import ZibMessaging

@MainActor
final class AppDelegate: NSObject, UIApplicationDelegate {
  private let news = News()

  func application(
    _ application: UIApplication,
    didFinishLaunchingWithOptions launchOptions: [UIApplication.LaunchOptionsKey: Any]?
  ) -> Bool {
    // The core library comes first. Yours starts itself in its own way.
    ZibMessaging.install(core: Core(autoSwizzlingEnabled: true))

    // The module holds it weakly.
    ZibMessaging.shared.delegate = news
    ZibDeepLinkHandler.shared.urlDelegate = { url in
      guard url.absoluteString.hasPrefix("https://shop.example/") else { return false }
      Task { @MainActor in Shop.shared.enter(url) }
      return true
    }
    ZibMessaging.shared.configure(application: application)

    // Asks the user for permission, now or whenever your app would rather ask.
    ZibMessaging.shared.registerForPush(application: application)
    return true
  }

  func application(
    _ application: UIApplication, didRegisterForRemoteNotificationsWithDeviceToken token: Data
  ) {
    print("app  | device token of", token.count, "bytes")
  }
}

// Called on the thread that has the news: not on the main actor.
final class News: NSObject, ZibMessagingDelegate {
  func zibMessaging(_ messaging: ZibMessaging, didReceiveToken token: String) {
    print("app  | push reaches this phone")
  }

  func zibMessaging(
    _ messaging: ZibMessaging, didReceiveNotification userInfo: [AnyHashable: Any]
  ) {
    print("app  | news of campaign", userInfo["pn_campaign_id"] ?? "(none)")
  }
}

@MainActor
final class Shop {
  static let shared = Shop()
  func enter(_ url: URL) { print("app  | enters the shop at", url.absoluteString) }
}
