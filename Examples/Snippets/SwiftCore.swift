import Foundation
import ZibMessaging

final class Core: NSObject, ZibCore {
  var config: ZibConfig? { ZibConfig(autoSwizzlingEnabled: true) }
  var pushConfigEndpoint: String? { "https://config.example/push.json" }

  func log(_ message: String) { print(message) }
  func error(_ message: String, error: Error?) { print(message, error ?? "") }
  func trackSelfDescribingEvent(schema: String, data: [String: Any]) { print(schema, data) }
  func registerPushToken(_ token: String) {}
  func savePushPermission(_ granted: Bool) {}
  func saveFCMToken(_ token: String) {}
}

func startCore() {
  ZibMessaging.install(core: Core())
}
