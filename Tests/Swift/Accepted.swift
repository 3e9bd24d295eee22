// Everything that the face offers, as hosts in Swift use it.

import Foundation
import UIKit
import UserNotifications
import ZibMessaging

final class EveryNews: NSObject, ZibMessagingDelegate {
  func zibMessaging(_ messaging: ZibMessaging, didReceiveToken token: String) {}
  func zibMessaging(
    _ messaging: ZibMessaging, didReceiveNotification userInfo: [AnyHashable: Any]
  ) {}
  func zibMessaging(
    _ messaging: ZibMessaging, didReceiveNotificationResponse response: UNNotificationResponse
  ) {}
  func zibMessaging(_ messaging: ZibMessaging, didFailToRegisterWithError error: Error) {}
}

// Each method is optional.
final class NoNews: NSObject, ZibMessagingDelegate {}

// What lives on the main actor says which methods do not.
@MainActor final class MainActorNews: NSObject, ZibMessagingDelegate {
  nonisolated func zibMessaging(_ messaging: ZibMessaging, didReceiveToken token: String) {}
}

final class Core: NSObject, ZibCore {
  var config: ZibConfig? { ZibConfig(autoSwizzlingEnabled: true) }
  var pushConfigEndpoint: String? { nil }
  func log(_ message: String) {}
  func error(_ message: String, error: Error?) {}
  func trackSelfDescribingEvent(schema: String, data: [String: Any]) {}
  func registerPushToken(_ token: String) {}
  func savePushPermission(_ granted: Bool) {}
  func saveFCMToken(_ token: String) {}
}

@MainActor func configure(_ application: UIApplication, _ delegate: EveryNews) {
  ZibMessaging.install(core: Core())
  let isSet: Bool = ZibMessaging.shared.setEventVendor("com.example")
  ZibMessaging.shared.delegate = isSet ? delegate : nil
  ZibMessaging.shared.delegateDiscovery = .continuous
  ZibMessaging.shared.configure(application: nil)
  ZibMessaging.shared.configure(application: application)
}

@MainActor func readReport() -> [String] {
  let report: ZibIntegrationReport = ZibMessaging.shared.integrationReport()
  let taken = report.rows.filter { row in row.state != .none && row.delegateClass != nil }
  let symbols: [String] = taken.flatMap { row in row.chain.compactMap { each in each.symbol } }
  let images = report.rows.flatMap { row in row.chain.compactMap { each in each.image } }
  return symbols + images + report.rows.map { row in row.method }
    + report.rows.flatMap { row in row.remarks } + [report.text]
}

func readState() -> Bool {
  let token: String? = ZibMessaging.shared.fcmToken
  let deviceToken: Data? = ZibMessaging.shared.apnsToken
  let schema: String = ZibMessaging.shared.notificationEventSchemaURI
  let path: String? = ZibPushConfig.shared.savedFirebasePlistPath
  return ZibMessaging.shared.isPushEnabled && token == path && deviceToken != nil && schema == ""
}

func forward(
  _ application: UIApplication, _ token: Data, _ error: Error, _ notification: UNNotification,
  _ response: UNNotificationResponse, _ url: URL, _ userInfo: [AnyHashable: Any]
) -> UNNotificationPresentationOptions {
  let messaging = ZibMessaging.shared
  messaging.registerForPush(application: application)
  messaging.didRegisterForRemoteNotifications(deviceToken: token)
  messaging.didFailToRegisterForRemoteNotifications(error: error)
  messaging.setPushToken(token)
  messaging.setFCMToken("token")
  messaging.didReceiveRegistrationToken("token")
  messaging.ensureFirebaseMessagingDelegate()
  messaging.setupAsNotificationDelegate()
  messaging.didReceive(response)
  messaging.trackNotificationReceived(userInfo: userInfo)
  messaging.trackNotificationOpened(userInfo: userInfo)
  let isHandled: Bool = ZibDeepLinkHandler.shared.handleNotificationURL(from: userInfo)
  let isRecorded: Bool = ZibDeepLinkHandler.shared.handleURL(url, source: "app_delegate")
  return isHandled && isRecorded ? [] : messaging.willPresent(notification)
}

func openLinks() {
  ZibDeepLinkHandler.shared.urlDelegate = { url in url.absoluteString.isEmpty }
  ZibDeepLinkHandler.shared.urlDelegate = nil
}

func buildPayloads(_ userInfo: [AnyHashable: Any]) -> [[String: Any]] {
  [
    ZibPayloadBuilder.createNotificationPayload(from: userInfo, eventType: "notification-opened"),
    ZibPayloadBuilder.createEventPayload(eventName: "visit", properties: ["page": 1]),
    ZibPayloadBuilder.createEventPayload(eventName: "visit", properties: nil),
  ]
}

func configurePush(_ application: UIApplication) {
  ZibPushConfig.shared.configurePush(
    application: application, configEndpoint: nil,
    firebaseConfigHandler: { config in _ = config.count },
    completion: { started in _ = started })
  ZibPushConfig.shared.registerForPushSimple(application: application)
}

func configurePushAndWait(_ application: UIApplication) async -> Bool {
  await ZibPushConfig.shared.configurePush(
    application: application, configEndpoint: "https://config.example/push.json",
    firebaseConfigHandler: { config in _ = config.count })
}

func isOurs(_ error: Error) -> Bool {
  if case ZibPushError.noData = error { return true }
  return (error as? ZibPushError)?.code == .invalidPlist
}

func send() -> [any Sendable] {
  [ZibMessaging.shared, ZibPushConfig.shared, ZibDeepLinkHandler.shared, Core(), EveryNews()]
}

func send(_ report: ZibIntegrationReport) -> [any Sendable] { [report, report.rows] }
