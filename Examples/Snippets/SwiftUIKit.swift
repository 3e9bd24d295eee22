import UIKit
import ZibMessaging

@MainActor
final class AppDelegate: NSObject, UIApplicationDelegate {
  func application(
    _ application: UIApplication,
    didFinishLaunchingWithOptions launchOptions: [UIApplication.LaunchOptionsKey: Any]?
  ) -> Bool {
    ZibMessaging.shared.configure(application: application)
    ZibMessaging.shared.registerForPush(application: application)
    return true
  }
}
