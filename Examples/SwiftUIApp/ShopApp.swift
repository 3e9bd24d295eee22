// An app of SwiftUI's life cycle that makes push depend on a remote switch. The adaptor's delegate
// starts the module; that SwiftUI has an application delegate of its own is the module's affair.

import SwiftUI
import UIKit
import ZibMessaging

@main
struct ShopApp: App {
  @UIApplicationDelegateAdaptor(Launch.self) private var launch

  var body: some Scene {
    WindowGroup {
      Text("Autumn sale")
    }
  }
}

@MainActor
final class Launch: NSObject, UIApplicationDelegate {
  func application(
    _ application: UIApplication,
    didFinishLaunchingWithOptions launchOptions: [UIApplication.LaunchOptionsKey: Any]?
  ) -> Bool {
    ZibMessaging.install(
      core: Core(
        autoSwizzlingEnabled: true, pushConfigEndpoint: "https://config.example/push.json"))
    ZibMessaging.shared.configure(application: application)

    Task {
      let isStarted = await ZibPushConfig.shared.configurePush(
        application: application, configEndpoint: nil,
        firebaseConfigHandler: { config in
          // On a thread of the URL session's: FirebaseApp.configure(options:) from these values.
          print("app  | starts Firebase with", config.count, "values")
        })
      print(isStarted ? "app  | asks for permission" : "app  | push is switched off")
    }
    return true
  }
}
