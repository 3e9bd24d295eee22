import SwiftUI
import UIKit
import ZibMessaging

@main
struct ShopApp: App {
  @UIApplicationDelegateAdaptor(Launch.self) private var launch

  var body: some Scene {
    WindowGroup { Text("Shop") }
  }
}

@MainActor
final class Launch: NSObject, UIApplicationDelegate {
  func application(
    _ application: UIApplication,
    didFinishLaunchingWithOptions launchOptions: [UIApplication.LaunchOptionsKey: Any]?
  ) -> Bool {
    ZibMessaging.shared.configure(application: application)
    ZibMessaging.shared.registerForPush(application: application)
    return true
  }
}
