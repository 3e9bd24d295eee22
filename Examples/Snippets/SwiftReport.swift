import UIKit
import ZibMessaging

@MainActor
func configureAndKeepWatch(_ application: UIApplication) {
  ZibMessaging.shared.delegateDiscovery = .continuous
  ZibMessaging.shared.configure(application: application)
}

@MainActor
func printReport() {
  print(ZibMessaging.shared.integrationReport().text)
}
