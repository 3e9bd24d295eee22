import UIKit
import ZibMessaging

func takeLinks() {
  ZibDeepLinkHandler.shared.urlDelegate = { url in
    guard url.absoluteString.hasPrefix("https://shop.example/") else { return false }
    print("opens", url.absoluteString)
    return true
  }
}
