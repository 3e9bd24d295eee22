// zib.h over the module's C++ classes: checks what comes in, converts, and stops every exception.

#include "ZibC/zib.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "ZibCoreBoundary/Zib.h"
#include "ZibCoreBoundary/ZibLogger.h"
#include "ZibCoreBoundary/ZibStorage.h"
#include "ZibMessaging/Private/Containment.h"
#include "ZibMessaging/ZibDeepLinkHandler.h"
#include "ZibMessaging/ZibIntegrationReport.h"
#include "ZibMessaging/ZibMessaging.h"
#include "ZibMessaging/ZibPayloadBuilder.h"
#include "ZibMessaging/ZibPushConfig.h"
#include "ZibMessaging/ZibPushError.h"
#include "ZibMessaging/ZibVersion.h"
#include "ZibPlatform/Foundation/Data.h"
#include "ZibPlatform/Foundation/JSON.h"
#include "ZibPlatform/Foundation/JSONText.h"
#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/Foundation/ValueConversion.h"
#include "ZibPlatform/ObjectiveC/AutoreleasePool.h"
#include "ZibPlatform/ObjectiveC/NeverDestroyed.h"

static_assert(ZIB_PUSH_ERROR_INVALID_URL == static_cast<int>(ZibPushError::invalidURL));
static_assert(ZIB_PUSH_ERROR_NO_DATA == static_cast<int>(ZibPushError::noData));
static_assert(ZIB_PUSH_ERROR_INVALID_PLIST == static_cast<int>(ZibPushError::invalidPlist));
static_assert(ZIB_PUSH_ERROR_FIREBASE_NOT_CONFIGURED ==
              static_cast<int>(ZibPushError::firebaseNotConfigured));

using zib::DelegateDiscovery;
using zib::IntegrationReport;

static_assert(ZIB_DELEGATE_DISCOVERY_ONCE_WITH_RETRY ==
              static_cast<int>(DelegateDiscovery::onceWithRetry));
static_assert(ZIB_DELEGATE_DISCOVERY_CONTINUOUS == static_cast<int>(DelegateDiscovery::continuous));
static_assert(ZIB_INTEGRATION_NONE == static_cast<int>(IntegrationReport::State::none));
static_assert(ZIB_INTEGRATION_SWAPPED == static_cast<int>(IntegrationReport::State::swapped));
static_assert(ZIB_INTEGRATION_ADDED == static_cast<int>(IntegrationReport::State::added));
static_assert(ZIB_INTEGRATION_FORWARDING == static_cast<int>(IntegrationReport::State::forwarding));

struct zib_integration_report {
  IntegrationReport report;
  std::string text;
};

namespace {

// Text.

zib_text copyOf(std::string_view text) noexcept {
  auto* bytes = static_cast<char*>(std::malloc(text.size() + 1));
  if (bytes == nullptr) return {};
  *std::copy(text.begin(), text.end(), bytes) = '\0';
  return {bytes, text.size()};
}

zib_text copyIfThere(const std::optional<std::string>& text) noexcept {
  return text ? copyOf(zib::wellFormed(*text)) : zib_text{};
}

std::string_view viewOf(zib_text text) noexcept {
  return text.bytes == nullptr ? std::string_view() : std::string_view(text.bytes, text.size);
}

std::string stringOf(zib_text text) { return zib::wellFormed(viewOf(text)); }

// For as long as the text lives and stays.
zib_text borrowed(const std::string& text) noexcept { return {text.c_str(), text.size()}; }

// A text of the module's for the length of a callback: UTF-8 and a NUL, as zib.h promises.
class TerminatedText {
 public:
  explicit TerminatedText(std::string_view text) {
    const bool isASCII = std::none_of(text.begin(), text.end(), [](char character) {
      return static_cast<unsigned char>(character) >= 0x80;
    });
    if (isASCII && text.size() < room_.size()) {
      *std::copy(text.begin(), text.end(), room_.begin()) = '\0';
      text_ = {room_.data(), text.size()};
    } else {
      spilled_ = zib::wellFormed(text);
      text_ = borrowed(spilled_);
    }
  }
  TerminatedText(const TerminatedText&) = delete;
  TerminatedText& operator=(const TerminatedText&) = delete;
  [[nodiscard]] zib_text text() const noexcept { return text_; }

 private:
  zib_text text_;
  std::array<char, 768> room_;  // NOLINT(cppcoreguidelines-pro-type-member-init): written above
  std::string spilled_;
};

// One of a host's functions that takes nothing but a text, where the host has given one.
void tell(void (*function)(void* context, zib_text text), void* context, std::string_view text) {
  if (function != nullptr) function(context, TerminatedText(text).text());
}

class BorrowedError {
 public:
  explicit BorrowedError(const zib::Error& error)
      : domain_(zib::wellFormed(error.domain)),
        description_(zib::wellFormed(error.description)),
        object_(error.nativeError()),
        error_{borrowed(domain_), error.code, borrowed(description_), object_.raw()} {}
  [[nodiscard]] const zib_error* get() const noexcept { return &error_; }

 private:
  std::string domain_;
  std::string description_;
  zib::Object object_;
  zib_error error_;
};

// What comes in.

using Parts = std::span<const std::string_view>;

void report(std::string_view operation, Parts problem, const std::optional<zib::Error>& error) {
  std::string line = zib::joined(operation, ": ", zib::joined(problem));
  if (ZibLogger::isInstalled()) {
    ZibLogger::shared().error(line, error);
  } else {
    std::fputs(line.append("\n").c_str(), stderr);
  }
}

// One call of a function of zib.h, under way.
class Operation {
 public:
  explicit Operation(const char* name) noexcept : name_(name) {}

  // Says what the problem is, in one line of these parts.
  template <class... Part>
  void fail(const Part&... problem) const noexcept {
    failFrom(std::nullopt, problem...);
  }
  // The same of a problem that comes from an error.
  template <class... Part>
  void failFrom(const std::optional<zib::Error>& error, const Part&... problem) const noexcept {
    failWith(error, std::array<std::string_view, sizeof...(Part)>{problem...});
  }

  // Whether the argument is there. Says so when it is not.
  bool has(const char* argument, const void* given) const noexcept {
    if (given == nullptr) fail(argument, " is null");
    return given != nullptr;
  }
  bool has(const char* argument, zib_text given) const noexcept {
    return has(argument, given.bytes);
  }
  // Whether it is of that class, too. What it raises as it is asked is perform()'s to report.
  template <zib::FixedString ClassName>
  bool hasA(const char* argument, zib_object given) const {
    return hasA(argument, given, zib::knownClass<ClassName>);
  }

 private:
  void failWith(const std::optional<zib::Error>& error, Parts problem) const noexcept {
    zib::contained(name_, [&] { report(name_, problem, error); });
  }
  bool hasA(const char* argument, zib_object given, zib::KnownClass& cls) const {
    if (!has(argument, given)) return false;
    const bool isOne = zib::isKind(given, cls);
    if (!isOne) fail(argument, " is no ", cls.name);
    return isOne;
  }

  const char* name_;
};

// perform() without the type of the work.
void performAt(const char* name, void (*call)(const Operation& operation, const void* work),
               const void* work) noexcept {
  // The host's thread may have none.
  const zib::AutoreleasePool pool;
  zib::contained(name, [&] { call(Operation(name), work); });
}

// Does what a function of zib.h is for, and gives its result; an empty one when an exception was
// stopped. What calls nothing that throws does without, in a pool of its own.
template <class Work>
auto perform(const char* name, const Work& work) noexcept {
  using Result = std::invoke_result_t<const Work&, const Operation&>;
  if constexpr (std::is_void_v<Result>) {
    const auto call = [](const Operation& operation, const void* of) {
      (*static_cast<const Work*>(of))(operation);
    };
    performAt(name, call, &work);
  } else {
    Result result{};
    perform(name, [&](const Operation& operation) { result = work(operation); });
    return result;
  }
}

void failForSize(const Operation& operation, std::size_t size, const char* name,
                 std::size_t known) {
  operation.fail("size ", std::to_string(size), " is that of no ", name, "; this version's is ",
                 std::to_string(known));
}

bool readTable(const Operation& operation, const char* name, const void* given, void* table,
               std::size_t smallest, std::size_t known) {
  std::size_t size = 0;
  std::memcpy(&size, given, sizeof(size));
  if (size < smallest || size > known || size % sizeof(void*) != 0) {
    failForSize(operation, size, name, known);
    return false;
  }
  std::memcpy(table, given, size);
  return true;
}

// Takes over a structure that a host filled in, of this version or of an older one that ended at an
// earlier member; `table` is empty before. All members are of a pointer's size.
template <class Table>
bool readTable(const Operation& operation, const char* name, const Table& given, Table& table) {
  constexpr std::size_t smallest = offsetof(Table, release) + sizeof(Table::release);
  return readTable(operation, name, &given, &table, smallest, sizeof(Table));
}

void letGo(zib_release release, void* context) noexcept {
  if (release != nullptr) zib::contained("release", [&] { release(context); });
}

// A host's functions and the context that goes with them, let go with the last owner.
template <class Table>
class Held {
 public:
  explicit Held(const Table& table = {}) : table_(table) {}
  ~Held() { letGo(table_.release, table_.context); }
  Held(const Held&) = delete;
  Held& operator=(const Held&) = delete;

  const Table* operator->() const noexcept { return &table_; }
  Table& operator*() noexcept { return table_; }

 private:
  Table table_;
};

// What the functions of zib.h keep.
struct Kept {
  std::mutex oneCoreAtATime;
  std::mutex oneDelegateAtATime;
  std::shared_ptr<ZibMessagingDelegate> delegate;
};

Kept& kept() {
  static zib::NeverDestroyed<Kept> kept([] { return Kept(); });
  return *kept;
}

// The core.

class CoreLogger final : public ZibLogger {
 public:
  explicit CoreLogger(const zib_core& core) : core_(core) {}

  void log(std::string_view message) override { tell(core_.log, core_.context, message); }
  void error(std::string_view message, const std::optional<zib::Error>& error) override {
    if (core_.error == nullptr) return;
    const TerminatedText line(message);
    if (error) {
      core_.error(core_.context, line.text(), BorrowedError(*error).get());
    } else {
      core_.error(core_.context, line.text(), nullptr);
    }
  }

 private:
  const zib_core& core_;
};

class Core final : public Zib {
 public:
  explicit Core(const zib_core& core) : core_(core) {}

  [[nodiscard]] std::optional<ZibConfig> config() const override {
    ZibConfig config;
    zib_config read{sizeof(zib_config), config.autoSwizzlingEnabled};
    if (core_.config == nullptr || !core_.config(core_.context, &read)) return std::nullopt;
    config.autoSwizzlingEnabled = read.auto_swizzling_enabled;
    return config;
  }
  [[nodiscard]] std::optional<std::string> pushConfigEndpoint() const override {
    if (core_.copy_push_config_endpoint == nullptr) return std::nullopt;
    const zib_text copied = core_.copy_push_config_endpoint(core_.context);
    if (copied.bytes == nullptr) return std::nullopt;
    const std::unique_ptr<const char, void (*)(const char*)> owned(copied.bytes,
                                                                   [](const char* bytes) {
                                                                     zib_text_free({bytes, 0});
                                                                   });
    return stringOf(copied);
  }
  void trackSelfDescribingEvent(std::string_view schema, const zib::ValueMap& data) override {
    if (core_.track_self_describing_event == nullptr) return;
    core_.track_self_describing_event(core_.context, TerminatedText(schema).text(),
                                      zib::objectFrom(data).raw());
  }
  void registerPushToken(std::string_view token) override {
    tell(core_.register_push_token, core_.context, token);
  }

 private:
  const zib_core& core_;
};

class CoreStorage final : public ZibStorage {
 public:
  explicit CoreStorage(const zib_core& core) : core_(core) {}

  void savePushPermission(bool granted) override {
    if (core_.save_push_permission != nullptr) core_.save_push_permission(core_.context, granted);
  }
  void saveFCMToken(std::string_view token) override {
    tell(core_.save_fcm_token, core_.context, token);
  }

 private:
  const zib_core& core_;
};

// The services that no core in C++ has installed before. False when there is none left.
bool installServices(const zib_core& core) {
  const std::lock_guard lock(kept().oneCoreAtATime);
  // All made first: what is installed refers to the core for good.
  auto logger = std::make_unique<CoreLogger>(core);
  auto events = std::make_unique<Core>(core);
  auto storage = std::make_unique<CoreStorage>(core);
  const bool asLogger = ZibLogger::install(std::move(logger));
  const bool asCore = Zib::install(std::move(events));
  const bool asStorage = ZibStorage::install(std::move(storage));
  return asLogger || asCore || asStorage;
}

// The delegate.

class Delegate final : public ZibMessagingDelegate {
 public:
  // Empty until it is filled in.
  zib_messaging_delegate& table() noexcept { return *delegate_; }

  void zibMessagingDidReceiveToken(ZibMessaging& /*messaging*/, std::string_view token) override {
    tell(delegate_->did_receive_token, delegate_->context, token);
  }
  void zibMessagingDidReceiveNotification(ZibMessaging& /*messaging*/,
                                          const zib::Dictionary& userInfo) override {
    if (delegate_->did_receive_notification == nullptr) return;
    delegate_->did_receive_notification(delegate_->context, userInfo.native());
  }
  void zibMessagingDidReceiveNotificationResponse(
      ZibMessaging& /*messaging*/, const zib::NotificationResponse& response) override {
    if (delegate_->did_receive_notification_response == nullptr) return;
    const TerminatedText action(zib::Utf8(response.actionIdentifier()).view());
    const zib::Dictionary userInfo = response.userInfo();
    delegate_->did_receive_notification_response(delegate_->context, response.native(),
                                                 action.text(), userInfo.native());
  }
  void zibMessagingDidFailToRegisterWithError(ZibMessaging& /*messaging*/,
                                              const zib::Error& error) override {
    if (delegate_->did_fail_to_register == nullptr) return;
    delegate_->did_fail_to_register(delegate_->context, BorrowedError(error).get());
  }

 private:
  Held<zib_messaging_delegate> delegate_;
};

// Keeps the delegate, which the module holds weakly: with one lock around both, so that the one
// that it holds is the one that is kept.
void keepDelegate(std::shared_ptr<ZibMessagingDelegate> delegate) {
  ZibMessaging& messaging = ZibMessaging::shared();
  const std::lock_guard lock(kept().oneDelegateAtATime);
  messaging.setDelegate(delegate);
  // The former one ends with its caller's argument, out of the lock: what it lets go is the host's.
  std::swap(kept().delegate, delegate);
}

// The integration report.

zib_text borrowedIfThere(const std::optional<std::string>& text) noexcept {
  return text ? borrowed(*text) : zib_text{};
}

// Whether the report has the element. Says so where it has not.
bool hasElement(const Operation& operation, const char* name, std::size_t count,
                std::size_t index) {
  if (index < count) return true;
  operation.fail("there is no ", name, " ", std::to_string(index), "; there are ",
                 std::to_string(count));
  return false;
}

// Where the members end that an older version of a structure may have ended with.
constexpr std::array rowEnds{
    offsetof(zib_integration_row, delegate_class), offsetof(zib_integration_row, state),
    offsetof(zib_integration_row, function_count), offsetof(zib_integration_row, remark_count)};
constexpr std::array functionEnds{offsetof(zib_integration_function, symbol)};

// Fills in what the caller's version of a structure has, which begins with its size.
bool writeTo(const Operation& operation, const char* name, void* result, const void* table,
             std::size_t known, std::span<const std::size_t> olderSizes) {
  std::size_t size = 0;
  std::memcpy(&size, result, sizeof(size));
  const bool isKnown =
      size < known ? std::find(olderSizes.begin(), olderSizes.end(), size) != olderSizes.end()
                   : size % sizeof(void*) == 0;
  if (!isKnown) {
    failForSize(operation, size, name, known);
    return false;
  }
  const std::size_t copied = std::min(size, known) - sizeof(size);
  std::memcpy(static_cast<char*>(result) + sizeof(size),
              static_cast<const char*>(table) + sizeof(size), copied);
  return true;
}

// None where there are none, or where they cannot be taken: the event goes on without them.
std::optional<zib::ValueMap> propertiesFrom(const Operation& operation, zib_object properties) {
  if (properties == nullptr) return std::nullopt;
  auto values = zib::Dictionary::retained(properties).values();
  if (values) return std::move(*values);
  operation.fail("properties are left out: ", values.error().description);
  return std::nullopt;
}

// Functions that come with a context of their own.

struct URLDelegate {
  zib_url_delegate call;
  void* context;
  zib_release release;
};

struct PushFlow {
  zib_firebase_config_handler handleFirebaseConfig;
  zib_push_config_completion complete;
  void* context;
  zib_release release;
};

}  // namespace

zib_text zib_text_copy(zib_text text) {
  return text.bytes == nullptr ? zib_text{} : copyOf(viewOf(text));
}

void zib_text_free(zib_text text) { std::free(const_cast<char*>(text.bytes)); }

zib_text zib_version(void) { return zib_text_of(ZIB_VERSION); }

void zib_object_release(zib_object object) {
  perform(__func__, [=](const Operation&) { static_cast<void>(zib::Object::adopted(object)); });
}

bool zib_core_install(const zib_core* core) {
  return perform(__func__, [=](const Operation& operation) -> bool {
    if (!operation.has("core", core)) return false;
    // For good: what is installed is never destroyed.
    auto kept = std::make_unique<zib_core>();
    if (!readTable(operation, "zib_core", *core, *kept)) return false;
    if (installServices(*kept)) {
      static_cast<void>(kept.release());
      return true;
    }
    operation.fail("a core is installed already");
    return false;
  });
}

bool zib_messaging_set_delegate(const zib_messaging_delegate* delegate) {
  return perform(__func__, [=](const Operation& operation) -> bool {
    if (delegate == nullptr) {
      keepDelegate(nullptr);
      return true;
    }
    auto made = std::make_shared<Delegate>();
    if (!readTable(operation, "zib_messaging_delegate", *delegate, made->table())) return false;
    keepDelegate(std::move(made));
    return true;
  });
}

bool zib_messaging_has_delegate(void) {
  const zib::AutoreleasePool pool;
  return ZibMessaging::shared().delegate() != nullptr;
}

bool zib_messaging_is_push_enabled(void) {
  const zib::AutoreleasePool pool;
  return ZibMessaging::shared().isPushEnabled();
}

zib_text zib_messaging_copy_fcm_token(void) {
  return perform(__func__,
                 [](const Operation&) { return copyIfThere(ZibMessaging::shared().fcmToken()); });
}

zib_object zib_messaging_copy_apns_token(void) {
  return perform(__func__, [](const Operation&) -> zib_object {
    const auto bytes = ZibMessaging::shared().apnsToken();
    return bytes ? zib::makeData(*bytes).relinquish() : nullptr;
  });
}

zib_text zib_messaging_copy_notification_event_schema_uri(void) {
  return copyOf(ZibPayloadBuilder::notificationEventSchemaURI());
}

bool zib_messaging_set_event_vendor(zib_text vendor) {
  return perform(__func__, [=](const Operation& operation) -> bool {
    if (!operation.has("vendor", vendor)) return false;
    return ZibMessaging::shared().setEventVendor(stringOf(vendor));
  });
}

int32_t zib_messaging_delegate_discovery(void) {
  const zib::AutoreleasePool pool;
  return static_cast<int32_t>(ZibMessaging::shared().delegateDiscovery());
}

bool zib_messaging_set_delegate_discovery(int32_t discovery) {
  return perform(__func__, [=](const Operation& operation) -> bool {
    if (discovery != ZIB_DELEGATE_DISCOVERY_ONCE_WITH_RETRY &&
        discovery != ZIB_DELEGATE_DISCOVERY_CONTINUOUS) {
      operation.fail("discovery ", std::to_string(static_cast<long long>(discovery)),
                     " is unknown; 0 (once, with a retry) and 1 (continuous) are allowed");
      return false;
    }
    return ZibMessaging::shared().setDelegateDiscovery(static_cast<DelegateDiscovery>(discovery));
  });
}

void zib_messaging_configure(zib_object application) {
  const zib::AutoreleasePool pool;
  ZibMessaging::shared().configure(zib::Application::retained(application));
}

void zib_messaging_register_for_push(zib_object application) {
  const zib::AutoreleasePool pool;
  ZibMessaging::shared().registerForPush(zib::Application::retained(application));
}

void zib_messaging_did_register_for_remote_notifications(zib_object device_token) {
  perform(__func__, [=](const Operation& operation) {
    if (!operation.hasA<"NSData">("device_token", device_token)) return;
    ZibMessaging::shared().didRegisterForRemoteNotifications(zib::bytesOf(device_token));
  });
}

void zib_messaging_did_fail_to_register_for_remote_notifications(zib_object error) {
  perform(__func__, [=](const Operation&) {
    ZibMessaging::shared().didFailToRegisterForRemoteNotifications(zib::Error::fromNative(error));
  });
}

void zib_messaging_set_push_token(zib_object device_token) {
  perform(__func__, [=](const Operation& operation) {
    if (!operation.hasA<"NSData">("device_token", device_token)) return;
    ZibMessaging::shared().setPushToken(zib::bytesOf(device_token));
  });
}

void zib_messaging_set_fcm_token(zib_text token) {
  perform(__func__, [=](const Operation& operation) {
    if (!operation.has("token", token)) return;
    ZibMessaging::shared().setFCMToken(stringOf(token));
  });
}

void zib_messaging_did_receive_registration_token(zib_text token) {
  perform(__func__, [=](const Operation& operation) {
    if (!operation.has("token", token)) return;
    ZibMessaging::shared().didReceiveRegistrationToken(stringOf(token));
  });
}

void zib_messaging_ensure_firebase_messaging_delegate(void) {
  const zib::AutoreleasePool pool;
  ZibMessaging::shared().ensureFirebaseMessagingDelegate();
}

void zib_messaging_setup_as_notification_delegate(void) {
  const zib::AutoreleasePool pool;
  ZibMessaging::shared().setupAsNotificationDelegate();
}

zib_object zib_messaging_runtime_object(void) {
  const zib::AutoreleasePool pool;
  return ZibMessaging::runtimeObject();
}

unsigned long zib_messaging_will_present(zib_object notification) {
  return perform(__func__, [=](const Operation& operation) -> unsigned long {
    if (!operation.hasA<"UNNotification">("notification", notification)) return 0;
    return ZibMessaging::shared().willPresent(zib::Notification::retained(notification));
  });
}

void zib_messaging_did_receive(zib_object response) {
  perform(__func__, [=](const Operation& operation) {
    if (!operation.hasA<"UNNotificationResponse">("response", response)) return;
    ZibMessaging::shared().didReceive(zib::NotificationResponse::retained(response));
  });
}

void zib_messaging_track_notification_received(zib_object user_info) {
  perform(__func__, [=](const Operation& operation) {
    if (!operation.hasA<"NSDictionary">("user_info", user_info)) return;
    ZibMessaging::shared().trackNotificationReceived(zib::Dictionary::retained(user_info));
  });
}

void zib_messaging_track_notification_opened(zib_object user_info) {
  perform(__func__, [=](const Operation& operation) {
    if (!operation.hasA<"NSDictionary">("user_info", user_info)) return;
    ZibMessaging::shared().trackNotificationOpened(zib::Dictionary::retained(user_info));
  });
}

zib_integration_report* zib_integration_report_create(void) {
  return perform(__func__, [](const Operation&) {
    auto made = std::make_unique<zib_integration_report>();
    made->report = zib::integrationReport();
    made->text = made->report.text();
    return made.release();
  });
}

void zib_integration_report_free(zib_integration_report* report) {
  std::default_delete<zib_integration_report>()(report);
}

zib_text zib_integration_report_text(const zib_integration_report* report) {
  const zib::AutoreleasePool pool;
  return Operation(__func__).has("report", report) ? borrowed(report->text) : zib_text{};
}

size_t zib_integration_report_row_count(const zib_integration_report* report) {
  const zib::AutoreleasePool pool;
  return Operation(__func__).has("report", report) ? report->report.rows.size() : 0;
}

bool zib_integration_report_get_row(const zib_integration_report* report, size_t row,
                                    zib_integration_row* result) {
  return perform(__func__, [=](const Operation& operation) -> bool {
    if (!operation.has("report", report) || !operation.has("result", result)) return false;
    const auto& rows = report->report.rows;
    if (!hasElement(operation, "row", rows.size(), row)) return false;
    const auto& found = rows[row];
    const zib_integration_row table = {sizeof(table),
                                       {found.method.data(), found.method.size()},
                                       borrowedIfThere(found.delegateClass),
                                       static_cast<std::int64_t>(found.state),
                                       found.chain.size(),
                                       found.remarks.size()};
    return writeTo(operation, "zib_integration_row", result, &table, sizeof(table), rowEnds);
  });
}

bool zib_integration_report_get_function(const zib_integration_report* report, size_t row,
                                         size_t function, zib_integration_function* result) {
  return perform(__func__, [=](const Operation& operation) -> bool {
    if (!operation.has("report", report) || !operation.has("result", result)) return false;
    const auto& rows = report->report.rows;
    if (!hasElement(operation, "row", rows.size(), row)) return false;
    const auto& chain = rows[row].chain;
    if (!hasElement(operation, "function", chain.size(), function)) return false;
    const zib_integration_function table = {sizeof(table), borrowedIfThere(chain[function].image),
                                            borrowedIfThere(chain[function].symbol)};
    return writeTo(operation, "zib_integration_function", result, &table, sizeof(table),
                   functionEnds);
  });
}

zib_text zib_integration_report_remark(const zib_integration_report* report, size_t row,
                                       size_t remark) {
  return perform(__func__, [=](const Operation& operation) -> zib_text {
    if (!operation.has("report", report)) return {};
    const auto& rows = report->report.rows;
    if (!hasElement(operation, "row", rows.size(), row)) return {};
    const auto& remarks = rows[row].remarks;
    if (!hasElement(operation, "remark", remarks.size(), remark)) return {};
    return borrowed(remarks[remark]);
  });
}

void zib_deep_link_handler_set_url_delegate(zib_url_delegate url_delegate, void* context,
                                            zib_release release) {
  perform(__func__, [=](const Operation&) {
    const auto held =
        std::make_shared<Held<URLDelegate>>(URLDelegate{url_delegate, context, release});
    if (url_delegate == nullptr) {
      ZibDeepLinkHandler::shared().setURLDelegate({});
      return;
    }
    ZibDeepLinkHandler::shared().setURLDelegate([held = held](const zib::URL& url) {
      const auto& delegate = *held;
      return delegate->call(delegate->context, url.native(),
                            TerminatedText(zib::Utf8(url.text()).view()).text());
    });
  });
}

bool zib_deep_link_handler_has_url_delegate(void) {
  const zib::AutoreleasePool pool;
  return ZibDeepLinkHandler::shared().hasURLDelegate();
}

bool zib_deep_link_handler_handle_notification_url(zib_object user_info) {
  return perform(__func__, [=](const Operation& operation) -> bool {
    if (!operation.hasA<"NSDictionary">("user_info", user_info)) return false;
    return ZibDeepLinkHandler::shared().handleNotificationURL(zib::Dictionary::retained(user_info));
  });
}

bool zib_deep_link_handler_handle_url(zib_object url, zib_text source) {
  return perform(__func__, [=](const Operation& operation) -> bool {
    if (!operation.hasA<"NSURL">("url", url) || !operation.has("source", source)) return false;
    return ZibDeepLinkHandler::shared().handleURL(*zib::URL::retained(url), stringOf(source));
  });
}

void zib_push_config_configure_push(zib_object application, zib_text config_endpoint,
                                    zib_firebase_config_handler firebase_config_handler,
                                    zib_push_config_completion completion, void* context,
                                    zib_release release) {
  perform(__func__, [=](const Operation& operation) {
    const auto flow = std::make_shared<Held<PushFlow>>(
        PushFlow{firebase_config_handler, completion, context, release});
    if (!operation.has("firebase_config_handler",
                       reinterpret_cast<const void*>(firebase_config_handler))) {
      return;
    }
    using Completion = ZibPushConfig::Completion;
    const std::string endpoint = stringOf(config_endpoint);
    ZibPushConfig::shared().configurePush(
        zib::Application::retained(application),
        config_endpoint.bytes == nullptr ? std::nullopt : std::optional<std::string_view>(endpoint),
        [flow = flow](const zib::Dictionary& config) {
          (*flow)->handleFirebaseConfig((*flow)->context, config.native());
        },
        completion == nullptr ? Completion() : Completion([flow = flow](bool started) {
          (*flow)->complete((*flow)->context, started);
        }));
  });
}

void zib_push_config_register_for_push_simple(zib_object application) {
  const zib::AutoreleasePool pool;
  ZibPushConfig::shared().registerForPushSimple(zib::Application::retained(application));
}

zib_text zib_push_config_copy_saved_firebase_plist_path(void) {
  return perform(__func__, [](const Operation&) {
    return copyIfThere(ZibPushConfig::shared().savedFirebasePlistPath());
  });
}

zib_object zib_payload_builder_create_notification_payload(zib_object user_info,
                                                           zib_text event_type) {
  return perform(__func__, [=](const Operation& operation) -> zib_object {
    if (!operation.hasA<"NSDictionary">("user_info", user_info) ||
        !operation.has("event_type", event_type)) {
      return nullptr;
    }
    return zib::objectFrom(ZibPayloadBuilder::createNotificationPayload(
                               zib::Dictionary::retained(user_info), stringOf(event_type)))
        .relinquish();
  });
}

zib_object zib_payload_builder_create_event_payload(zib_text event_name, zib_object properties) {
  return perform(__func__, [=](const Operation& operation) -> zib_object {
    if (!operation.has("event_name", event_name)) return nullptr;
    if (properties != nullptr && !operation.hasA<"NSDictionary">("properties", properties)) {
      return nullptr;
    }
    return zib::objectFrom(ZibPayloadBuilder::createEventPayload(
                               stringOf(event_name), propertiesFrom(operation, properties)))
        .relinquish();
  });
}

zib_text zib_string_copy(zib_object string) {
  return perform(__func__, [=](const Operation& operation) -> zib_text {
    if (!operation.hasA<"NSString">("string", string)) return {};
    return copyOf(zib::Utf8(zib::StringRef::of(string)).view());
  });
}

zib_object zib_string_create(zib_text text) {
  return perform(__func__, [=](const Operation&) -> zib_object {
    return text.bytes == nullptr ? nullptr : zib::makeString(viewOf(text)).relinquish();
  });
}

zib_text zib_json_copy(zib_object object) {
  return perform(__func__, [=](const Operation& operation) -> zib_text {
    if (!operation.has("object", object)) return {};
    const auto value = zib::valueFrom(object);
    if (value) return copyOf(zib::jsonTextOf(*value));
    operation.fail("object cannot be written: ", value.error().description);
    return zib_text{};
  });
}

zib_object zib_json_create(zib_text json) {
  return perform(__func__, [=](const Operation& operation) -> zib_object {
    if (!operation.has("json", json)) return nullptr;
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(json.bytes);
    auto parsed = zib::parseJSON({bytes, json.size});
    if (parsed) return (*parsed).relinquish();
    operation.failFrom(parsed.failure(), "json cannot be read");
    return nullptr;
  });
}
