// What the face has to refuse in Swift 6: each line with what the compiler has to say of it.

import Foundation
import UIKit
import UserNotifications
import ZibMessaging

func configureAnywhere(_ application: UIApplication) {
  // refused: call to main actor-isolated instance method 'configure(application:)' in a synchronous nonisolated context
  ZibMessaging.shared.configure(application: application)
}
func reportAnywhere() -> ZibIntegrationReport {
  // refused: call to main actor-isolated instance method 'integrationReport()' in a synchronous nonisolated context
  ZibMessaging.shared.integrationReport()
}
func makeAnother() {
  // refused: 'init()' is unavailable: use ZIBMessaging.shared
  _ = ZibMessaging()
  // refused: 'init()' is unavailable: its methods are of the class
  _ = ZibPayloadBuilder()
}
func useTheOldName() {
  // refused: 'ZIBMessaging' has been renamed to 'ZibMessaging'
  _ = ZIBMessaging.shared
}
// refused: cannot inherit from non-open class 'ZibMessaging' outside of its defining module
class OwnMessaging: ZibMessaging {}
func passNothing(_ application: UIApplication) {
  // refused: 'nil' is not compatible with expected argument type 'String'
  ZibMessaging.shared.setFCMToken(nil)
  // refused: 'nil' is not compatible with expected argument type 'UIApplication'
  ZibMessaging.shared.registerForPush(application: nil)
}
@MainActor var opened = 0
func countOnTheMainActor() {
  ZibDeepLinkHandler.shared.urlDelegate = { _ in
    // refused: main actor-isolated var 'opened' can not be mutated from a nonisolated context
    opened += 1
    return true
  }
}
@MainActor final class MainActorNews: NSObject, ZibMessagingDelegate {
  // refused: main actor-isolated instance method 'zibMessaging(_:didReceiveToken:)' cannot be used to satisfy nonisolated protocol requirement
  func zibMessaging(_ messaging: ZibMessaging, didReceiveToken token: String) {}
}
final class CountingNews: NSObject, ZibMessagingDelegate {
  // refused: stored property 'tokens' of 'Sendable'-conforming class 'CountingNews' is mutable
  var tokens = 0
}
// refused: type 'SilentCore' does not conform to protocol 'ZibCore'
final class SilentCore: NSObject, ZibCore {}
func guess(_ messaging: ZibMessaging) {
  // refused: value of optional type '((ZibMessaging, String) -> Void)?' must be unwrapped
  messaging.delegate?.zibMessaging(messaging, didReceiveToken: "")
}
