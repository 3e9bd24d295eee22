// A core library in Swift: all that it has to implement. It prints; a real one sends events to a
// server and keeps tokens. The module calls it on any thread.

import Foundation
import ZibMessaging

final class Core: NSObject, ZibCore {
  let config: ZibConfig?
  let pushConfigEndpoint: String?

  init(autoSwizzlingEnabled: Bool, pushConfigEndpoint: String? = nil) {
    config = ZibConfig(autoSwizzlingEnabled: autoSwizzlingEnabled)
    self.pushConfigEndpoint = pushConfigEndpoint
  }

  func log(_ message: String) { print("zib  |", message) }
  func error(_ message: String, error: Error?) { print("zib  |", message, error ?? "") }
  func trackSelfDescribingEvent(schema: String, data: [String: Any]) {
    print("core | event", schema, data)
  }
  func registerPushToken(_ token: String) { print("core | registers the token", token) }
  func savePushPermission(_ granted: Bool) { print("core | push is allowed:", granted) }
  func saveFCMToken(_ token: String) { print("core | stores the token", token) }
}
