// What a host or a core can write against the public classes, and cannot.

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "Tests/Support/Delegates.h"
#include "Tests/Support/Device.h"
#include "Tests/Support/Host.h"
#include "Tests/Support/TestSeam.h"
#include "ZibCoreBoundary/Zib.h"
#include "ZibCoreBoundary/ZibLogger.h"
#include "ZibMessaging/ZibDeepLinkHandler.h"
#include "ZibMessaging/ZibPayloadBuilder.h"
#include "ZibMessaging/ZibPushError.h"
#include "ZibPlatform/ObjectiveC/ClassBuilder.h"

namespace {

using test::Device;
using Lines = std::vector<std::string>;

template <class T>
constexpr bool stays = !std::is_copy_constructible_v<T> && !std::is_move_constructible_v<T> &&
                       !std::is_copy_assignable_v<T> && !std::is_move_assignable_v<T>;

TEST(PublicSurfaceTest, NoSingletonCanBeCopiedOrMoved) {
  static_assert(stays<ZibMessaging>);
  static_assert(stays<ZibPushConfig>);
  static_assert(stays<ZibDeepLinkHandler>);
  static_assert(stays<ZibSwizzleManager>);
  static_assert(stays<Zib>);
  EXPECT_EQ(&ZibMessaging::shared(), &ZibMessaging::shared());
}

TEST(PublicSurfaceTest, NoOperationThrows) {
  ZibMessaging& messaging = ZibMessaging::shared();
  static_assert(noexcept(ZibMessaging::shared()));
  static_assert(noexcept(ZibMessaging::runtimeObject()));
  static_assert(noexcept(messaging.setDelegate(nullptr)));
  static_assert(noexcept(messaging.setDelegate(std::weak_ptr<ZibMessagingDelegate>())));
  static_assert(noexcept(messaging.delegate()));
  static_assert(noexcept(messaging.fcmToken()));
  static_assert(noexcept(messaging.apnsToken()));
  static_assert(noexcept(messaging.setEventVendor("")));
  static_assert(noexcept(ZibPushConfig::shared()));
  static_assert(noexcept(ZibPushConfig::shared().savedFirebasePlistPath()));
  static_assert(noexcept(ZibDeepLinkHandler::shared()));
  static_assert(noexcept(ZibDeepLinkHandler::shared().setURLDelegate({})));
  static_assert(noexcept(ZibDeepLinkHandler::shared().urlDelegate()));
  static_assert(noexcept(ZibDeepLinkHandler::shared().hasURLDelegate()));
  static_assert(noexcept(ZibPayloadBuilder::createNotificationPayload({}, "")));
  static_assert(noexcept(ZibPayloadBuilder::createEventPayload("")));
  static_assert(noexcept(zib::errorFrom(ZibPushError::noData)));
  EXPECT_EQ(messaging.delegate(), nullptr);
}

TEST(PublicSurfaceTest, TheDelegateCanBeTakenBack) {
  const auto delegate = std::make_shared<ZibMessagingDelegate>();
  ZibMessaging::shared().setDelegate(delegate);
  EXPECT_EQ(ZibMessaging::shared().delegate(), delegate);
  ZibMessaging::shared().setDelegate(nullptr);
  EXPECT_EQ(ZibMessaging::shared().delegate(), nullptr);
}

class ReadingCore final : public Zib {
 public:
  explicit ReadingCore(std::vector<std::string>& texts) : texts_(texts) {}
  [[nodiscard]] std::optional<ZibConfig> config() const override { return std::nullopt; }
  void trackSelfDescribingEvent(std::string_view schema, const zib::ValueMap& data) override {
    texts_.emplace_back(schema);
    for (const zib::Member& member : data) {
      if (std::holds_alternative<std::string>(member.value.storage())) {
        texts_.push_back(member.key + "=" + std::get<std::string>(member.value.storage()));
      }
    }
  }
  [[nodiscard]] std::optional<std::string> pushConfigEndpoint() const override {
    return std::nullopt;
  }
  void registerPushToken(std::string_view) override {}

 private:
  std::vector<std::string>& texts_;
};

TEST(PublicSurfaceTest, ACoreFindsEveryTextOfAnEvent) {
  std::vector<std::string> texts;
  Zib::install(std::make_unique<ReadingCore>(texts));
  const Device device;
  ZibMessaging::shared().trackNotificationOpened(
      zib::Dictionary::from({{"club", "a club with a long name"}}));
  EXPECT_EQ(texts, (Lines{"iglu:com.zib/notification_event/jsonschema/3-0-0", "ma_channel=push",
                          "event_type=notification-clicked", "club=a club with a long name",
                          "campaign_source=PUSH-NOTIFICATION", "platform_name=ios"}));
}

TEST(PublicSurfaceTest, TheVendorIsSetBeforeConfigure) {
  std::vector<std::string> texts;
  Zib::install(std::make_unique<ReadingCore>(texts));
  const Device device;
  EXPECT_TRUE(ZibMessaging::shared().setEventVendor("org.example-1_a"));
  ZibMessaging::shared().configure(Device::application());
  ZibMessaging::shared().trackNotificationOpened({});
  EXPECT_EQ(texts.front(), "iglu:org.example-1_a/notification_event/jsonschema/3-0-0");
  EXPECT_EQ(ZibPayloadBuilder::notificationEventSchemaURI(), texts.front());
  EXPECT_TRUE(device.errorLines().empty());
}

TEST(PublicSurfaceTest, AVendorThatCannotBeTakenIsRefusedWithAReason) {
  const Device device;
  ZibMessaging& messaging = ZibMessaging::shared();
  EXPECT_FALSE(messaging.setEventVendor(""));
  EXPECT_FALSE(messaging.setEventVendor("a/b\n"));
  EXPECT_TRUE(messaging.setEventVendor("org.example"));
  EXPECT_FALSE(messaging.setEventVendor("org.other"));
  messaging.configure(Device::application());
  EXPECT_FALSE(messaging.setEventVendor("org.late"));
  const std::string allowed = " is refused: letters, digits, \".\", \"-\" and \"_\" are allowed";
  EXPECT_EQ(
      device.errorLines(),
      (Lines{"ZibMessaging: the event vendor \"\"" + allowed,
             "ZibMessaging: the event vendor \"a/b\\n\"" + allowed,
             "ZibMessaging: the event vendor \"org.other\" is refused: another was set before",
             "ZibMessaging: the event vendor \"org.late\" comes after configure() and is not "
             "taken"}));
  EXPECT_EQ(ZibPayloadBuilder::notificationEventSchemaURI(),
            "iglu:org.example/notification_event/jsonschema/3-0-0");
}

TEST(PublicSurfaceTest, ControlsInAHostsTextDoNotBreakALine) {
  const Device device;
  ZibMessaging& messaging = ZibMessaging::shared();
  messaging.setPushToken(zib::Bytes{1});
  messaging.setFCMToken("a\nb\x1B");
  EXPECT_EQ(messaging.fcmToken(), "a\nb\x1B");
  messaging.didReceive(zib::NotificationResponse::retained(
      sim::usernotifications::makeResponse({}, "tap\r\u2028action").raw()));
  ZibDeepLinkHandler::shared().handleURL(*zib::URL::parse("app://open"), "the\thost");
  EXPECT_EQ(device.countOfLine("📲 FCM token received (post-APNS): a\\nb\\u{1B}..."), 1U);
  EXPECT_EQ(device.countOfLine("Notification tapped with action: tap\\r\\u{2028}action"), 1U);
  EXPECT_EQ(device.countOfLine("ZibDeepLinkHandler: URL from the\\thost - app://open"), 1U);
  EXPECT_EQ(device.fields("core", "token"), std::vector<sim::Json>{"a\nb\x1B"});
}

zib::objc::id throwingObjectForKey(zib::objc::id, zib::objc::SEL, zib::objc::id) {
  throw std::runtime_error("planned");
}
zib::objc::UInteger one(zib::objc::id, zib::objc::SEL) { return 1; }

TEST(PublicSurfaceTest, ADictionaryThatThrowsGivesAnEventOfAllItsKeys) {
  const Device device;
  const zib::Class cls = zib::ClassBuilder("ThrowingDictionary", zib::classNamed<"NSDictionary">())
                             .method("objectForKey:", &throwingObjectForKey)
                             .method("count", &one)
                             .registerClass();
  const auto object =
      zib::Object::adopted(zib::send<zib::objc::id>(cls.object(), zib::selector<"alloc">()));
  const zib::ValueMap payload = ZibPayloadBuilder::createNotificationPayload(
      zib::Dictionary::retained(object.raw()), "some-type");
  EXPECT_EQ(payload.size(), 14U);
  EXPECT_EQ(*payload.find("event_type"), zib::Value("some-type"));
  EXPECT_EQ(*payload.find("domain_userid"), zib::Value());
  EXPECT_EQ(device.errorLines(),
            Lines{"ZibMessaging: stopped an exception in createNotificationPayload"});
}

TEST(PublicSurfaceTest, BothRuntimeClassesAreThereFromTheFirstUseOn) {
  const Device device;
  EXPECT_FALSE(zib::Class::named("ZibMessaging"));
  EXPECT_FALSE(zib::Class::named("ZibSwizzleManager"));
  ZibMessaging::shared();
  EXPECT_TRUE(zib::Class::named("ZibMessaging"));
  ZibSwizzleManager::shared();
  EXPECT_TRUE(zib::Class::named("ZibSwizzleManager"));
}

void take(const char* name) {
  zib::ClassBuilder(name, zib::classNamed<"NSObject">()).registerClass();
}

TEST(PublicSurfaceTest, ATakenNameOfTheMessagingClassIsTold) {
  const Device device;
  take("ZibMessaging");
  ZibMessaging::shared().configure(Device::application());
  Device::advance(2);
  EXPECT_EQ(device.errorLines(),
            Lines{"ZibMessaging: the class name \"ZibMessaging\" is taken by something else"});
  EXPECT_EQ(ZibMessaging::runtimeObject(), nullptr);
  EXPECT_EQ(device.countOfLine("✅ Zib SDK swizzling complete!"), 1U);
  EXPECT_EQ(device.countOfLine("ZibMessaging set as UNUserNotificationCenterDelegate"), 0U);
}

TEST(PublicSurfaceTest, WithoutTheInterceptorsClassThereAreNoDelegatesToIntercept) {
  const Device device;
  take("ZibSwizzleManager");
  const zib::Object host = test::makeHost("SurfaceHost", test::everyHostMethod);
  test::useForEverything(host);
  ZibMessaging::shared().configure(Device::application());
  Device::advance(2);
  EXPECT_EQ(device.errorLines(),
            Lines{"ZibMessaging: the class name \"ZibSwizzleManager\" is taken by something else"});
  EXPECT_EQ(device.countOfLine("⚠️ No AppDelegate found"), 1U);
  EXPECT_EQ(
      device.countOfLine("ℹ️ No UNUserNotificationCenterDelegate set yet - will check again"),
      1U);
  EXPECT_EQ(device.countOfLine("ℹ️ No Firebase MessagingDelegate set yet - will retry"), 1U);
  EXPECT_EQ(device.countOfLine("✅ Zib SDK swizzling complete!"), 1U);
  test::deviceToken(host.raw(), zib::makeData(zib::Bytes{1}).raw());
  EXPECT_EQ(device.entries("host").size(), 1U);
  EXPECT_EQ(ZibMessaging::shared().apnsToken(), std::nullopt);
}

}  // namespace
