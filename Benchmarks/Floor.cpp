#include "Benchmarks/Floor.h"

#include <array>
#include <atomic>
#include <cstring>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "ZibCoreBoundary/Zib.h"
#include "ZibCoreBoundary/ZibLogger.h"
#include "ZibCoreBoundary/ZibStorage.h"
#include "ZibMessaging/Private/QuotedText.h"
#include "ZibMessaging/ZibMessaging.h"
#include "ZibMessaging/ZibPayloadBuilder.h"
#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/Foundation/Structures.h"
#include "ZibPlatform/ObjectiveC/Block.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/ClassBuilder.h"
#include "ZibPlatform/ObjectiveC/Object.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace bench::floor {
namespace {

using zib::Block;
using zib::BlockLayout;
using zib::Class;
using zib::classNamed;
using zib::ConstantString;
using zib::constantString;
using zib::Object;
using zib::selector;
using zib::send;
using zib::objc::BOOL;
using zib::objc::id;
using zib::objc::IMP;
using zib::objc::SEL;
using zib::objc::UInteger;
using zib::objc::UniChar;

constexpr std::size_t room = 1024;

// A platform string as UTF-8, in place if it is short and ASCII.
class Text {
 public:
  explicit Text(id string) {
    const auto length = send<UInteger>(string, selector<"length">());
    if (length == 0) return;
    if (length <= room) {
      std::array<UniChar, room> units;  // NOLINT(cppcoreguidelines-pro-type-member-init)
      send<void>(string, selector<"getCharacters:range:">(), units.data(), zib::Range{0, length});
      unsigned all = 0;
      for (UInteger at = 0; at < length; ++at) {
        all |= units[at];
        characters_[at] = static_cast<char>(units[at]);
      }
      if (all < 0x80) {
        view_ = {characters_.data(), length};
        return;
      }
    }
    spilled_ = zib::utf8From(string);
    view_ = spilled_;
  }
  Text(const Text&) = delete;
  Text& operator=(const Text&) = delete;

  [[nodiscard]] std::string_view view() const { return view_; }

 private:
  std::array<char, room> characters_;  // NOLINT(cppcoreguidelines-pro-type-member-init)
  std::string spilled_;
  std::string_view view_;
};

void log(std::string_view line) { ZibLogger::shared().log(line); }

void log(std::string_view one, std::string_view two, std::string_view three = {}) {
  const std::size_t size = one.size() + two.size() + three.size();
  if (size > room) {
    log(std::string(one).append(two).append(three));
    return;
  }
  std::array<char, room> line;  // NOLINT(cppcoreguidelines-pro-type-member-init)
  char* end = line.data();
  for (const std::string_view part : {one, two, three}) {
    std::memcpy(end, part.data(), part.size());
    end += part.size();
  }
  log({line.data(), size});
}

bool isString(id object) {
  return object != nullptr &&
         send<BOOL>(object, selector<"isKindOfClass:">(), classNamed<"NSString">().raw()) != 0;
}

id valueOf(id userInfo, const ConstantString& key) {
  return send<id>(userInfo, selector<"objectForKey:">(), key.object());
}

bool equals(id string, std::string_view ascii) {
  if (send<UInteger>(string, selector<"length">()) != ascii.size()) return false;
  return Text(string).view() == ascii;
}

// What the module keeps, with the same promises to readers on other threads.

struct FloorState {
  std::mutex mutex;
  std::weak_ptr<ZibMessagingDelegate> delegate;
  std::shared_ptr<const std::function<bool(id)>> urlDelegate;
  std::optional<zib::Bytes> apnsToken;
  std::optional<std::string> fcmToken;
  std::atomic<bool> hasReceivedAPNSToken{false};
  std::atomic<IMP> didRegister{nullptr};
  std::atomic<IMP> didFailRegister{nullptr};
  std::atomic<IMP> openURL{nullptr};
  std::atomic<IMP> sceneOpenURL{nullptr};
  std::atomic<IMP> willPresent{nullptr};
  std::atomic<IMP> didReceive{nullptr};
  std::atomic<IMP> fcmTokenIMP{nullptr};
};
constinit FloorState state;

std::shared_ptr<ZibMessagingDelegate> messagingDelegate() {
  const std::lock_guard lock(state.mutex);
  return state.delegate.lock();
}

template <class Result, class... Arguments>
Result callHost(IMP host, id self, zib::Selector selector, Arguments... arguments) {
  return zib::callImplementation<Result>(host, self, selector, arguments...);
}

// URLs.

void trackCampaign(id url, std::string_view text) {
  const std::size_t query = text.find('?');
  if (query == std::string_view::npos) return;
  // A name can also be percent-encoded.
  if (text.find("utm_", query) == std::string_view::npos &&
      text.find('%', query) == std::string_view::npos) {
    return;
  }
  const id components =
      send<id>(classNamed<"NSURLComponents">().object(),
               selector<"componentsWithURL:resolvingAgainstBaseURL:">(), url, BOOL{1});
  const id items = send<id>(components, selector<"queryItems">());
  std::map<std::string, std::string> parameters;
  const auto count = send<UInteger>(items, selector<"count">());
  for (UInteger index = 0; index < count; ++index) {
    const id item = send<id>(items, selector<"objectAtIndex:">(), index);
    const Text name(send<id>(item, selector<"name">()));
    if (!name.view().starts_with("utm_")) continue;
    parameters[std::string(name.view())] = Text(send<id>(item, selector<"value">())).view();
  }
  if (parameters.empty()) return;
  std::string line = "   📊 UTM parameters: [";
  for (const auto& [name, value] : parameters) {
    if (line.back() != '[') line.append(", ");
    zib::appendQuoted(line, name);
    line.append(": ");
    zib::appendQuoted(line, value);
  }
  log(line.append("]"));
}

BOOL openURL(id self, SEL, id application, id url, id options) {
  const Object receiver = Object::retained(self);
  {
    const Text text(send<id>(url, selector<"absoluteString">()));
    log("🔗 [INTERCEPTED] application:open:options: ", text.view());
    trackCampaign(url, text.view());
  }
  const IMP host = state.openURL;
  if (host == nullptr) return BOOL{1};
  return callHost<BOOL>(host, receiver.raw(), selector<"application:openURL:options:">(),
                        application, url, options);
}

constexpr std::array<ConstantString, 9> linkKeys{
    constantString<"url">,       constantString<"link">,         constantString<"click_action">,
    constantString<"deep_link">, constantString<"deeplink">,     constantString<"click_url">,
    constantString<"web_link">,  constantString<"redirect_url">, constantString<"action_url">,
};

bool isAppExtension() {
  const id bundle = send<id>(classNamed<"NSBundle">().object(), selector<"mainBundle">());
  const id path = send<id>(bundle, selector<"bundlePath">());
  constexpr std::string_view suffix = ".appex";
  const auto length = send<UInteger>(path, selector<"length">());
  if (length < suffix.size()) return false;
  std::array<UniChar, suffix.size()> units{};
  send<void>(path, selector<"getCharacters:range:">(), units.data(),
             zib::Range{length - suffix.size(), suffix.size()});
  return std::equal(units.begin(), units.end(), suffix.begin());
}

void opened(BOOL success) {
  log("ZibDeepLinkHandler: URL open ", success != 0 ? "succeeded" : "failed");
}

void openInSystem(void* context) {
  const id url = static_cast<id>(context);
  const Class cls = classNamed<"UIApplication">();
  const id application =
      send<id>(cls.object(), selector<"performSelector:">(), selector<"sharedApplication">().raw());
  const zib::Selector open = selector<"openURL:options:completionHandler:">();
  if (send<BOOL>(application, selector<"respondsToSelector:">(), open.raw()) != 0) {
    static const id noOptions = send<id>(classNamed<"NSDictionary">().object(), selector<"new">());
    static const auto completion = Block<void(BOOL)>::from(&opened);
    const auto implementation =
        send<IMP>(application, selector<"methodForSelector:">(), open.raw());
    zib::callImplementation<void>(implementation, application, open, url, noOptions,
                                  completion.raw());
  }
  zib::objc::release(url);
}

bool isHandledByHost(id url) {
  std::shared_ptr<const std::function<bool(id)>> urlDelegate;
  {
    const std::lock_guard lock(state.mutex);
    urlDelegate = state.urlDelegate;
  }
  return urlDelegate != nullptr && (*urlDelegate)(url);
}

// Takes the reference to the URL over.
bool open(id url) {
  if (isAppExtension()) {
    log("ZibDeepLinkHandler: Cannot open URL in app extension");
    zib::objc::release(url);
    return false;
  }
  if (isHandledByHost(url)) {
    log("ZibDeepLinkHandler: Handled by urlDelegate");
    zib::objc::release(url);
    return true;
  }
  log("ZibDeepLinkHandler: Opening URL - ",
      Text(send<id>(url, selector<"absoluteString">())).view());
  zib::objc::dispatchAsync(&zib::objc::mainDispatchQueue, url, &openInSystem);
  return true;
}

// Tokens.

void didRegister(id self, SEL, id application, id token) {
  const Object receiver = Object::retained(self);
  log("📲 [INTERCEPTED] didRegisterForRemoteNotifications");
  const auto* bytes =
      static_cast<const std::uint8_t*>(send<const void*>(token, selector<"bytes">()));
  const auto size = send<UInteger>(token, selector<"length">());
  {
    std::optional<zib::Bytes> stored(std::in_place, bytes, bytes + size);
    const std::lock_guard lock(state.mutex);
    std::swap(state.apnsToken, stored);
  }
  state.hasReceivedAPNSToken = true;
  constexpr std::string_view digits = "0123456789abcdef";
  std::array<char, 20> shown{};
  const std::size_t shownBytes = std::min<std::size_t>(size, shown.size() / 2);
  for (std::size_t at = 0; at < shownBytes; ++at) {
    shown[2 * at] = digits[bytes[at] >> 4U];
    shown[2 * at + 1] = digits[bytes[at] & 0xFU];
  }
  log("📱 APNS token registered: ", {shown.data(), 2 * shownBytes}, "...");
  log("   ℹ️ APNS registered, waiting for fresh FCM token from Firebase...");
  if (const IMP host = state.didRegister) {
    callHost<void>(host, receiver.raw(),
                   selector<"application:didRegisterForRemoteNotificationsWithDeviceToken:">(),
                   application, token);
  }
}

void didFailRegister(id self, SEL, id application, id error) {
  const Object receiver = Object::retained(self);
  log("❌ [INTERCEPTED] didFailToRegisterForRemoteNotifications");
  const zib::Error value = zib::Error::fromNative(error);
  ZibLogger::shared().error("Failed to register for push", value);
  if (const auto delegate = messagingDelegate()) {
    delegate->zibMessagingDidFailToRegisterWithError(ZibMessaging::shared(), value);
  }
  if (const IMP host = state.didFailRegister) {
    callHost<void>(host, receiver.raw(),
                   selector<"application:didFailToRegisterForRemoteNotificationsWithError:">(),
                   application, error);
  }
}

void setFCMToken(std::string_view token) {
  const std::string_view shown = zib::firstCharacters(token, 20);
  if (!state.hasReceivedAPNSToken) {
    log("⚠️ Ignoring FCM token received before APNS registration: ", shown, "...");
    return;
  }
  log("📲 FCM token received (post-APNS): ", shown, "...");
  {
    std::optional<std::string> stored(token);
    const std::lock_guard lock(state.mutex);
    std::swap(state.fcmToken, stored);
  }
  ZibStorage::shared().saveFCMToken(token);
  Zib::shared().registerPushToken(token);
  if (const auto delegate = messagingDelegate()) {
    delegate->zibMessagingDidReceiveToken(ZibMessaging::shared(), token);
  }
}

void fcmToken(id self, SEL, id messaging, id token) {
  const Object receiver = Object::retained(self);
  if (isString(token)) {
    const Text text(token);
    log("🔥 [INTERCEPTED] Firebase MessagingDelegate - FCM token: ",
        zib::firstCharacters(text.view(), 20), "...");
    setFCMToken(text.view());
  } else {
    log("🔥 [INTERCEPTED] Firebase MessagingDelegate - FCM token: nil...");
  }
  if (const IMP host = state.fcmTokenIMP) {
    callHost<void>(host, receiver.raw(), selector<"messaging:didReceiveRegistrationToken:">(),
                   messaging, token);
  }
}

// Notifications.

id userInfoOf(id notification) {
  const id request = send<id>(notification, selector<"request">());
  return send<id>(send<id>(request, selector<"content">()), selector<"userInfo">());
}

void track(id userInfo, std::string_view eventType) {
  const id type = valueOf(userInfo, constantString<"pn_type">);
  if (isString(type) && equals(type, "PUSH-NOTIFICATION-SEND-TEST")) return;
  trackFlatEvent(ZibPayloadBuilder::notificationEventSchemaURI(), eventOf(userInfo, eventType));
}

UInteger presentationOptions() {
  static const bool hasBanners = [] {
    const id process = send<id>(classNamed<"NSProcessInfo">().object(), selector<"processInfo">());
    return send<BOOL>(process, selector<"isOperatingSystemAtLeastVersion:">(),
                      zib::OperatingSystemVersion{14, 0, 0}) != 0;
  }();
  return hasBanners ? 19 : 7;
}

void willPresent(id self, SEL, id center, id notification, BlockLayout* completion) {
  const Object receiver = Object::retained(self);
  log("🔔 [INTERCEPTED] willPresent notification");
  const id userInfo = userInfoOf(notification);
  log("Notification received in foreground");
  track(userInfo, "notification-delivered");
  if (const auto delegate = messagingDelegate()) {
    delegate->zibMessagingDidReceiveNotification(ZibMessaging::shared(),
                                                 zib::Dictionary::retained(userInfo));
  }
  const IMP host = state.willPresent;
  if (host == nullptr) {
    Block<void(UInteger)>::call(completion, presentationOptions());
    return;
  }
  const auto wrapper =
      Block<void(UInteger)>::from([completion = Block<void(UInteger)>::copied(completion)](
                                      UInteger chosen) { completion(chosen); });
  callHost<void>(
      host, receiver.raw(),
      selector<"userNotificationCenter:willPresentNotification:withCompletionHandler:">(), center,
      notification, wrapper.raw());
}

void didReceive(id self, SEL, id center, id response, BlockLayout* completion) {
  const Object receiver = Object::retained(self);
  log("👆 [INTERCEPTED] didReceive notification response");
  const id userInfo = userInfoOf(send<id>(response, selector<"notification">()));
  log("Notification tapped with action: ",
      Text(send<id>(response, selector<"actionIdentifier">())).view());
  track(userInfo, "notification-clicked");
  if (const auto delegate = messagingDelegate()) {
    delegate->zibMessagingDidReceiveNotificationResponse(
        ZibMessaging::shared(), zib::NotificationResponse::retained(response));
  }
  handleNotificationURL(userInfo);
  const IMP host = state.didReceive;
  if (host == nullptr) {
    Block<void()>::call(completion);
    return;
  }
  const auto wrapper =
      Block<void()>::from([completion = Block<void()>::copied(completion)] { completion(); });
  callHost<void>(
      host, receiver.raw(),
      selector<"userNotificationCenter:didReceiveNotificationResponse:withCompletionHandler:">(),
      center, response, wrapper.raw());
}

void sceneOpenURLContexts(id self, SEL, id scene, id contexts) {
  const Object receiver = Object::retained(self);
  const id context = send<id>(contexts, selector<"anyObject">());
  if (context == nullptr) return;
  const id url = send<id>(context, selector<"URL">());
  {
    const Text text(send<id>(url, selector<"absoluteString">()));
    log("🔗 [INTERCEPTED] scene:openURLContexts: ", text.view());
    trackCampaign(url, text.view());
    log("ZibDeepLinkHandler: URL from scene_delegate - ", text.view());
  }
  if (const IMP host = state.sceneOpenURL) {
    callHost<void>(host, receiver.raw(), selector<"scene:openURLContexts:">(), scene, contexts);
  }
}

// Start-up.

struct Row {
  const char* host;
  const char* interceptor;
  std::string_view logName;
  std::atomic<IMP> FloorState::*saved;
};

constexpr Row didRegisterRow{
    "application:didRegisterForRemoteNotificationsWithDeviceToken:", "zib_didRegister:deviceToken:",
    "didRegisterForRemoteNotificationsWithDeviceToken", &FloorState::didRegister};
constexpr Row didFailRow{
    "application:didFailToRegisterForRemoteNotificationsWithError:", "zib_didFailRegister:error:",
    "didFailToRegisterForRemoteNotificationsWithError", &FloorState::didFailRegister};
constexpr Row openURLRow{"application:openURL:options:", "zib_openURL:url:options:",
                         "application:open:options:", &FloorState::openURL};
constexpr Row sceneRow{"scene:openURLContexts:", "zib_scene:openURLContexts:",
                       "scene:openURLContexts:", &FloorState::sceneOpenURL};
constexpr Row willPresentRow{
    "userNotificationCenter:willPresentNotification:withCompletionHandler:",
    "zib_willPresent:notification:completionHandler:", "willPresent:withCompletionHandler:",
    &FloorState::willPresent};
constexpr Row didReceiveRow{
    "userNotificationCenter:didReceiveNotificationResponse:withCompletionHandler:",
    "zib_didReceive:response:completionHandler:", "didReceive:withCompletionHandler:",
    &FloorState::didReceive};
constexpr Row tokenRow{
    "messaging:didReceiveRegistrationToken:", "zib_messaging:didReceiveRegistrationToken:",
    "messaging:didReceiveRegistrationToken:", &FloorState::fcmTokenIMP};

void intercept(Class delegateClass, Class interceptors, const Row& row) {
  const auto method = delegateClass.instanceMethod(zib::Selector(row.host));
  const auto interceptor = interceptors.instanceMethod(zib::Selector(row.interceptor));
  if (method) {
    state.*row.saved = method.implementation();
    method.setImplementation(interceptor.implementation());
    log("  ✓ Swapped: ", row.logName);
  } else {
    delegateClass.addMethod(zib::Selector(row.host), interceptor.implementation(),
                            interceptor.typeEncoding());
    log("  + Added: ", row.logName);
  }
}

Class registerInterceptors() {
  return zib::ClassBuilder("FloorSwizzleManager", classNamed<"NSObject">())
      .method(didRegisterRow.interceptor, &didRegister)
      .method(didFailRow.interceptor, &didFailRegister)
      .method(openURLRow.interceptor, &openURL)
      .method(sceneRow.interceptor, &sceneOpenURLContexts)
      .method(willPresentRow.interceptor, &willPresent)
      .method(didReceiveRow.interceptor, &didReceive)
      .method(tokenRow.interceptor, &fcmToken)
      .registerClass();
}

// What the centre and Firebase hold where the host has no delegate of its own. Here it has one, but
// the look at Firebase compares it with this object.
id messagingObject() {
  static const id object = [] {
    const Class cls = zib::ClassBuilder("FloorMessaging", classNamed<"NSObject">())
                          .method(willPresentRow.host, &willPresent)
                          .method(didReceiveRow.host, &didReceive)
                          .method(tokenRow.host, &fcmToken)
                          .registerClass();
    return send<id>(cls.object(), selector<"new">());
  }();
  return object;
}

id firebaseDelegate() {
  const Class cls = classNamed<"FIRMessaging">();
  const id instance = send<id>(cls.object(), selector<"messaging">());
  return send<id>(instance, selector<"delegate">());
}

void lookAtFirebase(void* = nullptr) {
  if (firebaseDelegate() != messagingObject()) {
    log("ℹ️ Customer has set Firebase MessagingDelegate - SDK will swizzle it");
  }
}

Class delegateClassOf(id owner) { return Class::ofObject(send<id>(owner, selector<"delegate">())); }

void interceptScenes(id application, Class interceptors) {
  const id scenes = send<id>(application, selector<"connectedScenes">());
  const id all = send<id>(scenes, selector<"objectEnumerator">());
  while (const id scene = send<id>(all, selector<"nextObject">())) {
    if (send<BOOL>(scene, selector<"isKindOfClass:">(), classNamed<"UIWindowScene">().raw()) == 0) {
      continue;
    }
    const Class delegateClass = delegateClassOf(scene);
    log("🎬 Swizzling SceneDelegate: ", delegateClass.name());
    intercept(delegateClass, interceptors, sceneRow);
  }
}

}  // namespace

void configure() {
  if (!Zib::shared().config()->autoSwizzlingEnabled || isAppExtension()) return;
  log("🚀 ZibMessaging: Setting up automatic swizzling...");
  log("🔧 Starting Zib SDK auto-swizzling...");
  const Class interceptors = registerInterceptors();
  const id application =
      send<id>(classNamed<"UIApplication">().object(), selector<"sharedApplication">());
  const Class appDelegate = delegateClassOf(application);
  log("📱 Swizzling AppDelegate: ", appDelegate.name());
  intercept(appDelegate, interceptors, didRegisterRow);
  intercept(appDelegate, interceptors, didFailRow);
  intercept(appDelegate, interceptors, openURLRow);
  interceptScenes(application, interceptors);
  const id center = send<id>(classNamed<"UNUserNotificationCenter">().object(),
                             selector<"currentNotificationCenter">());
  const Class centerDelegate = delegateClassOf(center);
  log("🔔 Swizzling UNUserNotificationCenterDelegate: ", centerDelegate.name());
  intercept(centerDelegate, interceptors, willPresentRow);
  intercept(centerDelegate, interceptors, didReceiveRow);
  const Class tokenDelegate = Class::ofObject(firebaseDelegate());
  log("🔥 Swizzling Firebase MessagingDelegate: ", tokenDelegate.name());
  intercept(tokenDelegate, interceptors, tokenRow);
  log("✅ Zib SDK swizzling complete!");
  lookAtFirebase();
  constexpr std::int64_t tenthOfASecond = 100'000'000;
  zib::objc::dispatchAfter(zib::objc::dispatchTime(0, tenthOfASecond),
                           &zib::objc::mainDispatchQueue, nullptr, &lookAtFirebase);
}

FlatEvent eventOf(id userInfo, std::string_view eventType) {
  const auto text = [&](const ConstantString& key) -> decltype(FlatField::value) {
    const id value = valueOf(userInfo, key);
    if (!isString(value)) return std::monostate();
    return std::string(Text(value).view());
  };
  return {{
      {"pn_campaign_id", text(constantString<"pn_campaign_id">)},
      {"ma_campaign_id", text(constantString<"ma_campaign_id">)},
      {"node_id", text(constantString<"node_id">)},
      {"ma_channel", std::string_view("push")},
      {"user_id", std::monostate()},
      {"event_type", eventType},
      {"club", text(constantString<"club">)},
      {"environment", text(constantString<"environment">)},
      {"customer_key", text(constantString<"customer_key">)},
      {"reasons", std::monostate()},
      {"campaign_source", std::string_view("PUSH-NOTIFICATION")},
      {"platform_name", std::string_view("ios")},
      {"click_url", text(constantString<"click_url">)},
      {"domain_userid", text(constantString<"_id">)},
  }};
}

bool handleNotificationURL(id userInfo) {
  for (const ConstantString& key : linkKeys) {
    const id value = valueOf(userInfo, key);
    if (!isString(value)) continue;
    const Text text(value);
    if (text.view().empty() || text.view() == "NA") continue;
    const id allocated = send<id>(classNamed<"NSURL">().object(), selector<"alloc">());
    const id url = send<id>(allocated, selector<"initWithString:encodingInvalidCharacters:">(),
                            value, BOOL{0});
    if (url == nullptr) return false;
    log("ZibDeepLinkHandler: Found URL - ", text.view());
    return open(url);
  }
  return false;
}

void setURLDelegate(std::function<bool(id)> urlDelegate) {
  auto shared = urlDelegate
                    ? std::make_shared<const std::function<bool(id)>>(std::move(urlDelegate))
                    : nullptr;
  const std::lock_guard lock(state.mutex);
  state.urlDelegate = std::move(shared);
}

}  // namespace bench::floor
