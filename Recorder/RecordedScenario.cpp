#include "Recorder/RecordedScenario.h"

#ifdef ZIB_RECORDS_CALLS

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <utility>

#include "Recorder/Redaction.h"
#include "ZibCoreBoundary/Zib.h"
#include "ZibMessaging/ZibDeepLinkHandler.h"
#include "ZibMessaging/ZibMessaging.h"
#include "ZibMessaging/ZibPushConfig.h"
#include "ZibPlatform/Dispatch/MainQueue.h"
#include "ZibPlatform/Foundation/Elements.h"
#include "ZibPlatform/Foundation/Files.h"
#include "ZibPlatform/Foundation/JSON.h"
#include "ZibPlatform/Foundation/JSONText.h"
#include "ZibPlatform/Foundation/Process.h"
#include "ZibPlatform/Foundation/PropertyList.h"
#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/Foundation/ValueConversion.h"
#include "ZibPlatform/ObjectiveC/AutoreleasePool.h"
#include "ZibPlatform/ObjectiveC/Send.h"
#include "ZibPlatform/UIKit/Scenes.h"
#include "ZibPlatform/UserNotifications/UserNotifications.h"

namespace zib::recorder {
namespace {

using objc::id;

constexpr std::string_view defaultAction = "com.apple.UNNotificationDefaultActionIdentifier";

// In seconds. Where the device is simulated, that is simulated too.
double clockNow() { return sendToClass<"NSDate", "timeIntervalSinceReferenceDate", double>(); }

std::string systemVersion() {
  constexpr long highest = 99;
  long major = 0;
  while (major < highest && isSystemAtLeast(major + 1, 0)) ++major;
  long minor = 0;
  while (minor < highest && isSystemAtLeast(major, minor + 1)) ++minor;
  return std::to_string(major) + "." + std::to_string(minor);
}

std::string hexOf(std::span<const std::uint8_t> bytes) {
  constexpr std::string_view digits = "0123456789abcdef";
  constexpr unsigned bitsOfADigit = 4;
  std::string hex;
  for (const std::uint8_t byte : bytes) {
    hex += digits[byte >> bitsOfADigit];
    hex += digits[byte & 0xFU];
  }
  return hex;
}

Value configNow() {
  const auto config = Zib::shared().config();
  if (!config) return Null();
  return ValueMap{{"autoSwizzlingEnabled", config->autoSwizzlingEnabled}};
}

bool hasMessagingDelegate() { return ZibMessaging::shared().delegate() != nullptr; }
bool hasURLDelegate() { return static_cast<bool>(ZibDeepLinkHandler::shared().urlDelegate()); }

// What the host calls and a scenario has a step of its own for.
bool isStep(std::string_view operation) {
  constexpr std::array<std::string_view, 4> steps{"configure", "registerForPush",
                                                  "registerForPushSimple", "configurePush"};
  return std::find(steps.begin(), steps.end(), operation) != steps.end();
}

// Of a URL of HTTP: the host as a scenario lists it, and what the request asks it for.
struct Target {
  std::string host;
  std::string path;
};

Target targetOf(std::string_view url) {
  constexpr std::string_view beforeHost = "://";
  if (const std::size_t start = url.find(beforeHost); start != std::string_view::npos) {
    url.remove_prefix(start + beforeHost.size());
  }
  const std::size_t end = std::min(url.find_first_of("/?#"), url.size());
  std::string_view host = url.substr(0, end);
  std::string_view path = url.substr(end);
  path = path.substr(0, path.find('#'));
  if (const std::size_t user = host.find('@'); user != std::string_view::npos) {
    host.remove_prefix(user + 1);
  }
  const std::size_t port = host.find(':', host.starts_with('[') ? host.find(']') : 0);
  Target target{std::string(host.substr(0, port)), std::string(path)};
  std::transform(target.host.begin(), target.host.end(), target.host.begin(), [](char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
  });
  if (!target.path.starts_with('/')) target.path.insert(0, "/");
  return target;
}

// The fault by which a scenario's network comes to the same error; none for a host that cannot be
// reached at all.
std::optional<std::string> faultFor(const Error& error) {
  struct Row {
    std::int64_t code;
    const char* fault;
  };
  constexpr std::array rows{Row{-1001, "hang"},  Row{-1003, "unknownHost"}, Row{-1004, "refuse"},
                            Row{-1005, "reset"}, Row{-1200, "tls"},         Row{-1201, "tls"},
                            Row{-1202, "tls"},   Row{-1203, "tls"},         Row{-1204, "tls"}};
  const auto found = std::find_if(rows.begin(), rows.end(),
                                  [&](const Row& row) { return row.code == error.code; });
  return found == rows.end() ? std::nullopt : std::optional<std::string>(found->fault);
}

bool isTimeOut(const Error& error) { return faultFor(error) == "hang"; }

std::string textFrom(std::span<const std::uint8_t> bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

// A document that says nothing any more and that the module reads in the same way.
std::string redactedDocument(std::span<const std::uint8_t> body, Redaction& redaction) {
  if (const auto json = parseJSON(body)) {
    if (const auto value = valueFrom(json->raw())) return jsonTextOf(redaction.value(*value));
  }
  if (const auto plist = parsePropertyList(body)) {
    const auto dictionary = Dictionary::withTextKeys(*plist);
    if (const auto read = dictionary ? dictionary->values() : Result<ValueMap>(Error{})) {
      const Value values = redaction.value(Value(*read));
      const auto xml = xmlPropertyList(Dictionary::from(*values.get<ValueMap>()));
      if (xml) return textFrom(bytesOf(xml->raw()));
    }
  }
  return redaction.text(wellFormed(textFrom(body)));
}

}  // namespace

RecordedScenario::RecordedScenario(std::string path, Texts texts)
    : path_(std::move(path)), texts_(texts), start_(clockNow()) {}

bool RecordedScenario::begin() {
  std::ofstream file(path_, std::ios::app);
  if (!file) return false;
  const HostView view = HostView::now();
  const std::lock_guard lock(mutex_);
  describeDevice();
  describeCore();
  describeHost(view);
  write();
  return true;
}

std::string RecordedScenario::shownText(std::string_view text) {
  return texts_ == Texts::redacted ? redaction_.text(text) : std::string(text);
}
Value RecordedScenario::shown(const Value& value) {
  return texts_ == Texts::redacted ? redaction_.value(value) : value;
}

ValueMap RecordedScenario::errorFields(const Error& error) {
  return {{"domain", error.domain},
          {"code", error.code},
          {"description", shownText(error.description)}};
}

void RecordedScenario::describeDevice() {
  device_.set("osVersion", systemVersion());
  device_.set("authorization", ValueMap{{"answer", "manual"}});
  // Whose bundle it is says more than is asked; what the module decides by stays.
  if (isAppExtension()) {
    device_.set("bundlePath", "/Applications/HostApp.app/PlugIns/Extension.appex");
  }
  if (isTestProcessWithoutApp()) device_.set("bundleIdentifier", Null());
  if (!fileInDocuments("any")) device_.set("documents", "missing");
}

void RecordedScenario::describeCore() {
  core_.set("config", configNow());
  const auto endpoint = Zib::shared().pushConfigEndpoint();
  core_.set("pushConfigEndpoint", endpoint ? Value(shownText(*endpoint)) : Value());
}

Value RecordedScenario::describeScene(const SceneView& scene) {
  return ValueMap{{"window", scene.hasWindow}, {"delegate", classes_.describe(scene.delegate)}};
}

ValueMap RecordedScenario::describeFirebase(const FirebaseView& firebase) {
  if (!firebase.hasClassMethod) return {{"classMethod", false}};
  if (!firebase.hasInstance) return {{"instance", false}};
  return {{"delegateProperty", firebase.hasDelegateProperty},
          {"settable", firebase.isSettable},
          {"delegate", classes_.describe(firebase.delegate)}};
}

void RecordedScenario::describeHost(const HostView& view) {
  if (!view.hasApplication) {
    device_.set("application", view.hasApplicationClass ? "noInstance" : "noClass");
  } else {
    device_.set("application", view.opensURLs ? "present" : "noOpenURL");
  }
  host_.set("appDelegate", classes_.describe(view.appDelegate));
  const bool isBoth = view.appDelegate != nullptr && view.notificationDelegate == view.appDelegate;
  host_.set("notificationDelegate",
            isBoth ? Value("appDelegate") : classes_.describe(view.notificationDelegate));
  Array scenes;
  for (const SceneView& scene : view.scenes) scenes.push_back(describeScene(scene));
  host_.set("scenes", std::move(scenes));
  host_.set("firebase",
            view.firebase.isThere ? Value(describeFirebase(view.firebase)) : Value(Null()));
  hadMessagingDelegate_ = hasMessagingDelegate();
  host_.set("messagingDelegate", hadMessagingDelegate_);
  urlDelegate_ = hasURLDelegate() ? Value(false) : Value();
  host_.set("urlDelegate", urlDelegate_);
  core_.set("config", configNow());
  seen_ = view;
}

void RecordedScenario::noteScenes(const HostView& view) {
  for (const SceneView& scene : view.scenes) {
    const bool isKnown =
        std::any_of(seen_.scenes.begin(), seen_.scenes.end(),
                    [&](const SceneView& known) { return known.scene == scene.scene; });
    if (isKnown) continue;
    ValueMap step = *describeScene(scene).get<ValueMap>();
    step.set("do", "connectScene");
    addBefore(std::move(step));
    seen_.scenes.push_back(scene);
  }
}

void RecordedScenario::noteDelegates() {
  if (std::exchange(hadMessagingDelegate_, hasMessagingDelegate()) && !hadMessagingDelegate_) {
    addBefore({{"do", "releaseMessagingDelegate"}});
  }
  const bool hadURLDelegate = urlDelegate_.get<bool>() != nullptr;
  if (hadURLDelegate != hasURLDelegate()) {
    urlDelegate_ = hadURLDelegate ? Value() : Value(false);
    addBefore({{"do", "setURLDelegate"}, {"value", urlDelegate_}});
  }
}

void RecordedScenario::noteChanges(const HostView& view) {
  if (view.hasApplication && !seen_.hasApplication) {
    device_.set("application", "late");
    host_.set("appDelegate", classes_.describe(view.appDelegate));
    Array scenes;
    for (const SceneView& scene : view.scenes) scenes.push_back(describeScene(scene));
    host_.set("scenes", std::move(scenes));
    seen_.scenes = view.scenes;
    seen_.hasApplication = true;
    addBefore({{"do", "finishLaunching"}});
  }
  if (view.notificationDelegate != seen_.notificationDelegate) {
    const bool isBoth =
        view.appDelegate != nullptr && view.notificationDelegate == view.appDelegate;
    addBefore({{"do", "setNotificationDelegate"},
               {"delegate",
                isBoth ? Value("appDelegate") : classes_.describe(view.notificationDelegate)}});
    seen_.notificationDelegate = view.notificationDelegate;
  }
  noteScenes(view);
  if (view.firebase != seen_.firebase) {
    ValueMap step = describeFirebase(view.firebase);
    step.set("do", "setFirebase");
    addBefore(std::move(step));
    seen_.firebase = view.firebase;
  }
  noteDelegates();
}

void RecordedScenario::look() {
  if (!isMainThread()) return;
  const AutoreleasePool pool;
  const HostView view = HostView::now();
  const std::lock_guard lock(mutex_);
  if (steps_.empty()) {
    describeHost(view);
  } else {
    noteChanges(view);
  }
  write();
}

void RecordedScenario::addBefore(ValueMap step) { steps_.push_back(std::move(step)); }

// Whole milliseconds, and none too few: what was due is due then.
void RecordedScenario::passTime() {
  constexpr double milliseconds = 1000;
  constexpr double error = 1e-3;
  const double passed = std::ceil((clockNow() - start_ - played_) * milliseconds - error);
  if (passed < 1) return;
  steps_.push_back(ValueMap{{"do", "advance"}, {"seconds", passed / milliseconds}});
  played_ += passed / milliseconds;
}

void RecordedScenario::add(ValueMap step, const char* otherThread) {
  look();
  if (!isMainThread()) step.set("thread", otherThread);
  const std::lock_guard lock(mutex_);
  passTime();
  steps_.push_back(std::move(step));
  write();
}

void RecordedScenario::hostCalled(const char* operation, const ValueMap& arguments) {
  ValueMap fields;
  for (const auto& [key, value] : arguments) {
    if (const auto* const bytes = value.get<Bytes>()) {
      fields.set(key, shownText(hexOf(*bytes)));
    } else if (key == "error") {
      ValueMap error = *value.get<ValueMap>();
      error.set("description", shown(*error.find("description")));
      fields.set(key, std::move(error));
    } else {
      const bool isName = key == "action" || key == "source" || key == "value";
      fields.set(key, isName ? value : shown(value));
    }
  }
  if (std::string_view(operation) == "setDelegateDiscovery") hasToldDiscovery_ = true;
  if (!isStep(operation)) {
    ValueMap step{{"do", "call"}, {"operation", operation}};
    if (!fields.empty()) step.set("arguments", std::move(fields));
    add(std::move(step));
    return;
  }
  const bool watches = ZibMessaging::shared().delegateDiscovery() == DelegateDiscovery::continuous;
  if (watches && !hasToldDiscovery_ && std::string_view(operation) == "configure") {
    add({{"do", "call"},
         {"operation", "setDelegateDiscovery"},
         {"arguments", ValueMap{{"value", "continuous"}}}});
  }
  fields.set("do", operation);
  add(std::move(fields));
  const std::lock_guard lock(mutex_);
  if (std::string_view(operation) == "configurePush") configurePush_ = steps_.size() - 1;
}

void RecordedScenario::systemCalled(Row row, id subject, id more) {
  switch (row) {
    case Row::didRegister:
      add({{"do", "deviceToken"}, {"hex", shownText(hexOf(bytesOf(subject)))}});
      break;
    case Row::didFailRegister:
      add({{"do", "registrationFailure"},
           {"error", subject == nullptr ? Value() : errorFields(Error::fromNative(subject))}});
      break;
    case Row::openURL:
      add({{"do", "openURL"},
           {"url", shownText(Utf8(Borrowed<URL>(cast<"NSURL">(subject))->text()).view())},
           {"options", shown(recording::valuesOf(Dictionary::retained(more)))}});
      break;
    case Row::sceneOpenURL: {
      look();
      const auto scene = std::find_if(seen_.scenes.begin(), seen_.scenes.end(),
                                      [&](const SceneView& each) { return each.scene == subject; });
      if (scene == seen_.scenes.end()) return;
      Array urls;
      for (const id context : elements(more)) {
        if (const auto url = urlOfContext(context)) {
          urls.push_back(shownText(Utf8(url->text()).view()));
        }
      }
      add({{"do", "sceneOpenURLs"},
           {"scene", scene - seen_.scenes.begin()},
           {"urls", std::move(urls)}});
      break;
    }
    case Row::willPresent:
      add({{"do", "present"},
           {"userInfo", shown(recording::valuesOf(Notification::retained(subject).userInfo()))}});
      break;
    case Row::didReceive: {
      const NotificationResponse response = NotificationResponse::retained(subject);
      ValueMap step{{"do", "respond"},
                    {"userInfo", shown(recording::valuesOf(response.userInfo()))}};
      if (std::string action = response.actionIdentifier().utf8(); action != defaultAction) {
        step.set("action", std::move(action));
      }
      add(std::move(step));
      break;
    }
    case Row::fcmToken: {
      const auto token = StringRef::of(subject);
      add({{"do", "fcmToken"}, {"token", token ? Value(shownText(Utf8(token).view())) : Value()}});
      break;
    }
  }
}

void RecordedScenario::answered(bool isGranted, const std::optional<Error>& error) {
  ValueMap step{{"do", "answerAuthorization"}, {"granted", isGranted}};
  if (error) step.set("error", errorFields(*error));
  add(std::move(step), "system");
}

ValueMap RecordedScenario::answerFrom(const URLReply& reply) {
  constexpr long statusOK = 200;
  ValueMap answer;
  if (reply.httpStatus && *reply.httpStatus != statusOK) answer.set("status", *reply.httpStatus);
  if (reply.body.empty()) return answer;
  std::string text = textFrom(reply.body);
  if (texts_ == Texts::redacted) {
    answer.set("text", redactedDocument(reply.body, redaction_));
  } else if (wellFormed(text) == text) {
    answer.set("text", std::move(text));
  } else {
    answer.set("base64", Bytes(reply.body.begin(), reply.body.end()));
  }
  return answer;
}

void RecordedScenario::requested(const void* exchange, const URL& url) {
  const std::lock_guard lock(mutex_);
  requests_.insert_or_assign(exchange, shownText(url.text().utf8()));
}

// A scenario has one answer for each address: the first.
void RecordedScenario::replied(const void* exchange, const URLReply& reply) {
  const std::lock_guard lock(mutex_);
  const auto [host, path] = targetOf(requests_[exchange]);
  if (reply.error && isTimeOut(*reply.error)) played_ = std::max(played_, clockNow() - start_);
  const std::optional<std::string> fault = reply.error ? faultFor(*reply.error) : std::nullopt;
  if (reply.error && !fault) return;
  const Value* const known = network_.find(host);
  ValueMap site = known == nullptr ? ValueMap() : *known->get<ValueMap>();
  if (site.find(path) != nullptr) return;
  site.set(path, fault ? ValueMap{{"fault", *fault}} : answerFrom(reply));
  network_.set(host, std::move(site));
  write();
}

// Known only now, while the link is handled: the step that led to it is the latest.
void RecordedScenario::urlDelegateAnswered(bool isHandled) {
  const std::lock_guard lock(mutex_);
  if (urlDelegate_ == Value(isHandled)) return;
  urlDelegate_ = isHandled;
  const std::size_t place = steps_.empty() ? 0 : steps_.size() - 1;
  steps_.insert(steps_.begin() + static_cast<std::ptrdiff_t>(place),
                ValueMap{{"do", "setURLDelegate"}, {"value", isHandled}});
  if (configurePush_ >= place) ++configurePush_;
  write();
}

void RecordedScenario::handlerBegins() {
  const std::lock_guard lock(mutex_);
  firebaseBeforeHandler_ = firebaseNow();
  if (!ZibPushConfig::shared().savedFirebasePlistPath() && device_.find("documents") == nullptr) {
    device_.set("documents", "readOnly");
  }
}

void RecordedScenario::handlerEnded() {
  const FirebaseView firebase = firebaseNow();
  const std::lock_guard lock(mutex_);
  if (firebase == firebaseBeforeHandler_ || configurePush_ >= steps_.size()) return;
  ValueMap step = *steps_[configurePush_].get<ValueMap>();
  step.set("firebase", describeFirebase(firebase));
  steps_[configurePush_] = std::move(step);
  seen_.firebase = firebase;
  write();
}

// Whole each time, in place of the file before it. Time that has passed since the last step may
// have brought something.
void RecordedScenario::write() {
  const std::size_t count = steps_.size();
  const double played = played_;
  passTime();
  std::string text = "{\n  \"name\": \"A recording\",\n";
  const auto section = [&](const char* name, const ValueMap& fields) {
    text.append("  \"").append(name).append("\": ").append(jsonTextOf(fields)).append(",\n");
  };
  section("device", device_);
  section("core", core_);
  section("host", host_);
  section("network", network_);
  text += "  \"steps\": [";
  for (const Value& step : steps_) {
    text.append(&step == steps_.data() ? "\n    " : ",\n    ").append(jsonTextOf(step));
  }
  text += steps_.empty() ? "]\n}\n" : "\n  ]\n}\n";
  steps_.resize(count);
  played_ = played;
  const std::string part = path_ + ".part";
  std::ofstream(part, std::ios::binary | std::ios::trunc) << text;
  static_cast<void>(std::rename(part.c_str(), path_.c_str()));
}

}  // namespace zib::recorder

#endif
