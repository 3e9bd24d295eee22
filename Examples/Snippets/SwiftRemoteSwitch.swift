import UIKit
import ZibMessaging

@MainActor
func startPush(_ application: UIApplication) async {
  let isStarted = await ZibPushConfig.shared.configurePush(
    application: application, configEndpoint: "https://config.example/push.json",
    firebaseConfigHandler: { values in
      // FirebaseApp.configure(options:), made from these.
      print(values["API_KEY"] ?? "no key")
    })
  print(isStarted ? "asking for permission" : "push is switched off")
}
