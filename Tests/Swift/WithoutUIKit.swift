// A file that imports the module alone still sees what takes a type of UserNotifications.

import ZibMessaging

func respond() {
  let didReceive = ZibMessaging.shared.didReceive
  let willPresent = ZibMessaging.shared.willPresent
  _ = (didReceive, willPresent)
}

final class Tokens: NSObject, ZibMessagingDelegate {
  func zibMessaging(_ messaging: ZibMessaging, didReceiveToken token: String) {}
}
