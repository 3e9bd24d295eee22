// zib.h: what comes back through it, what it refuses, and whom it lets go when.

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstring>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "Simulator/Foundation/Foundation.h"
#include "Simulator/Timeline/Timeline.h"
#include "Simulator/UIKit/UIKit.h"
#include "Simulator/UserNotifications/UserNotifications.h"
#include "Tests/Support/Device.h"
#include "Tests/Support/Exceptions.h"
#include "Tests/Support/Image.h"
#include "Tests/Support/PushFlow.h"
#include "Tests/Support/RowName.h"
#include "Tests/ZibC/CSurface.h"
#include "ZibC/zib.h"
#include "ZibMessaging/ZibVersion.h"
#include "ZibPlatform/Foundation/Data.h"
#include "ZibPlatform/Foundation/Dictionary.h"
#include "ZibPlatform/Foundation/URL.h"
#include "ZibPlatform/Foundation/ValueConversion.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Send.h"

// What hosts must not do is what is tried here.
#if defined(__clang__)
#pragma clang diagnostic ignored "-Wnonnull"
#endif

namespace {

using namespace std::string_literals;
using test::Device;
using test::Thrown;
using zib::Object;
using zib::Value;
using zib::ValueMap;
using Lines = std::vector<std::string>;

Object deviceToken() { return zib::makeData(zib::Bytes{0x8f, 0x3a}); }
Object text() { return zib::makeString("text"); }
Object payload() { return zib::objectFrom(ValueMap{{"pn_campaign_id", "autumn"}}); }
Object notification() { return sim::usernotifications::makeNotification({{"_id", "u"}}); }
Object response() { return sim::usernotifications::makeResponse({{"_id", "u"}}, "action_2"); }

std::string taken(zib_text text) {
  EXPECT_NE(text.bytes, nullptr);
  std::string result(text.bytes, text.size);
  zib_text_free(text);
  return result;
}

// Counts how often a context was let go.
void countRelease(void* context) { ++*static_cast<int*>(context); }

// A core in C.

TEST(ZibCoreInCTest, ReceivesWhatTheModuleHandsOver) {
  sim::foundation::install();
  c_notes notes{};
  ASSERT_TRUE(c_install_core(&notes));
  zib_messaging_configure(nullptr);
  zib_messaging_did_register_for_remote_notifications(deviceToken().raw());
  zib_messaging_set_fcm_token(zib_text_of("fcm-token"));
  zib_messaging_track_notification_opened(payload().raw());
  zib_messaging_did_fail_to_register_for_remote_notifications(nullptr);
  const std::string text = notes.text;
  EXPECT_TRUE(
      text.starts_with("config;saved;fcm-token;fcm-token;"
                       "iglu:com.zib/notification_event/jsonschema/3-0-0;{"))
      << text;
  EXPECT_NE(text.find("\"pn_campaign_id\":\"autumn\""), std::string::npos) << text;
  EXPECT_NE(text.find(";Failed to register for push;"), std::string::npos) << text;
  EXPECT_EQ(text.find("released"), std::string::npos);
}

TEST(ZibCoreInCTest, SaysWhereThePushConfigurationIs) {
  test::PushFlow flow;
  flow.connect();
  zib_push_config_configure_push(
      Device::application().native(), zib_text{}, [](void*, zib_object) {}, nullptr, nullptr,
      nullptr);
  EXPECT_EQ(flow.device().errorLines().back(),
            "Push config endpoint not available - SDK not initialized?");
}

TEST(ZibCoreInCTest, IsAskedForTheEndpoint) {
  sim::foundation::install();
  c_notes notes{};
  ASSERT_TRUE(c_install_core(&notes));
  sim::uikit::install(sim::uikit::ApplicationPresence::present, true);
  zib_push_config_configure_push(
      sim::uikit::application(), zib_text{}, [](void*, zib_object) {}, nullptr, nullptr, nullptr);
  EXPECT_TRUE(std::string(notes.text).starts_with("endpoint;")) << notes.text;
}

TEST(ZibWithoutCoreTest, IsSaidOnceOnStandardError) {
  sim::foundation::install();
  testing::internal::CaptureStderr();
  zib_messaging_configure(nullptr);
  zib_messaging_configure(nullptr);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "ZibMessaging: configured without a core: its log lines and events go nowhere\n");
}

TEST(ZibWithoutCoreTest, IsNotSaidWhereThereIsOne) {
  const Device device;
  testing::internal::CaptureStderr();
  zib_messaging_configure(nullptr);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(ZibCoreInCTest, MayConfigureFromItsConfiguration) {
  sim::foundation::install();
  static std::vector<std::string> lines;
  zib_core core{};
  core.size = sizeof(core);
  core.config = [](void*, zib_config*) {
    static int calls = 0;
    if (++calls < 4) zib_messaging_configure(nullptr);
    return true;
  };
  core.log = [](void*, zib_text line) { lines.emplace_back(line.bytes); };
  ASSERT_TRUE(zib_core_install(&core));
  const Device device;
  zib_messaging_configure(nullptr);
  ASSERT_GE(lines.size(), 2U);
  EXPECT_EQ(lines[0], "ZibMessaging already configured");
  const std::string setUp = "🚀 ZibMessaging: Setting up automatic swizzling...";
  EXPECT_EQ(lines[1], setUp);
  EXPECT_EQ(std::count(lines.begin(), lines.end(), setUp), 1);
}

// The members of a core of an older version, which ended after `error`.
constexpr std::size_t olderSize = offsetof(zib_core, track_self_describing_event);

TEST(ZibCoreInCTest, OfAnOlderVersionWorks) {
  sim::foundation::install();
  static std::string lines;
  zib_core core{};
  core.size = olderSize;
  core.log = [](void*, zib_text line) { lines += std::string(line.bytes) + ";"; };
  // Its members are all that there is, and after them comes what is none.
  const std::unique_ptr<std::byte[]> memory(new std::byte[olderSize]);
  std::memcpy(memory.get(), &core, olderSize);
  ASSERT_TRUE(zib_core_install(reinterpret_cast<const zib_core*>(memory.get())));
  zib_messaging_did_register_for_remote_notifications(deviceToken().raw());
  zib_messaging_set_fcm_token(zib_text_of("fcm-token"));
  zib_messaging_track_notification_received(payload().raw());
  EXPECT_NE(lines.find("FCM token received"), std::string::npos) << lines;
}

TEST(ZibCoreInCTest, OfAnUnknownSizeIsRefused) {
  sim::foundation::install();
  int released = 0;
  zib_core core{};
  core.context = &released;
  core.release = &countRelease;
  for (const std::size_t size : {std::size_t{0}, sizeof(std::size_t), sizeof(zib_core) - 1,
                                 sizeof(zib_core) + sizeof(void*)}) {
    core.size = size;
    testing::internal::CaptureStderr();
    EXPECT_FALSE(zib_core_install(&core));
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "zib_core_install: size " + std::to_string(size) +
                  " is that of no zib_core; this version's is " + std::to_string(sizeof(zib_core)) +
                  "\n");
  }
  EXPECT_EQ(released, 0);
}

TEST(ZibCoreInCTest, IsRefusedWhenThereIsOne) {
  const Device device;
  c_notes notes{};
  EXPECT_FALSE(c_install_core(&notes));
  EXPECT_EQ(device.errorLines(), std::vector{"zib_core_install: a core is installed already"s});
  EXPECT_EQ(notes.text, ""s);
}

// A delegate in C.

TEST(ZibDelegateInCTest, HearsOfEverything) {
  const Device device;
  c_notes notes{};
  EXPECT_FALSE(zib_messaging_has_delegate());
  ASSERT_TRUE(c_set_delegate(&notes));
  EXPECT_TRUE(zib_messaging_has_delegate());
  zib_messaging_did_register_for_remote_notifications(deviceToken().raw());
  zib_messaging_did_receive_registration_token(zib_text_of("fcm-token"));
  EXPECT_EQ(zib_messaging_will_present(notification().raw()), 19U);
  zib_messaging_did_receive(response().raw());
  const zib::Error error{ZIB_PUSH_ERROR_DOMAIN, ZIB_PUSH_ERROR_NO_DATA, "no data", {}};
  zib_messaging_did_fail_to_register_for_remote_notifications(error.nativeError().raw());
  EXPECT_EQ(notes.text,
            "fcm-token;{\"_id\":\"u\"};response;action_2;{\"_id\":\"u\"};"
            "ZibMessaging.ZibPushError;no data;object;"s);
}

TEST(ZibDelegateInCTest, IsReleasedWhenAnotherTakesItsPlace) {
  const Device device;
  c_notes first{};
  c_notes second{};
  c_set_delegate(&first);
  c_set_delegate(&second);
  EXPECT_EQ(first.text, "released;"s);
  EXPECT_EQ(second.text, ""s);
  EXPECT_TRUE(zib_messaging_set_delegate(nullptr));
  EXPECT_EQ(second.text, "released;"s);
  EXPECT_FALSE(zib_messaging_has_delegate());
  zib_messaging_will_present(notification().raw());
  EXPECT_EQ(second.text, "released;"s);
}

TEST(ZibDelegateInCTest, MayTakeItselfBackInItsOwnCall) {
  const Device device;
  int released = 0;
  zib_messaging_delegate delegate{};
  delegate.size = sizeof(delegate);
  delegate.context = &released;
  delegate.release = &countRelease;
  delegate.did_receive_notification = [](void* context, zib_object) {
    zib_messaging_set_delegate(nullptr);
    EXPECT_EQ(*static_cast<int*>(context), 0);  // not while it runs
  };
  zib_messaging_set_delegate(&delegate);
  zib_messaging_will_present(notification().raw());
  EXPECT_EQ(released, 1);
}

TEST(ZibDelegateInCTest, IsAlwaysThereWhileThreadsSetOne) {
  const Device device;
  zib_messaging_delegate delegate{};
  delegate.size = sizeof(delegate);
  std::atomic<int> lost = 0;
  std::vector<std::thread> threads;
  for (int index = 0; index < 4; ++index) {
    threads.emplace_back([&] {
      for (int time = 0; time < 50'000; ++time) {
        zib_messaging_set_delegate(&delegate);
        if (!zib_messaging_has_delegate()) ++lost;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(lost, 0);
}

TEST(ZibDelegateInCTest, MayBeSetWhereAnotherIsReleased) {
  const Device device;
  static c_notes second{};
  zib_messaging_delegate delegate{};
  delegate.size = sizeof(delegate);
  delegate.release = [](void*) { c_set_delegate(&second); };
  zib_messaging_set_delegate(&delegate);
  zib_messaging_set_delegate(nullptr);
  EXPECT_TRUE(zib_messaging_has_delegate());
  zib_messaging_set_delegate(nullptr);
  EXPECT_EQ(second.text, "released;"s);
}

TEST(ZibDelegateInCTest, OfAnUnknownSizeIsRefused) {
  const Device device;
  c_notes notes{};
  c_set_delegate(&notes);
  zib_messaging_delegate delegate{};
  delegate.size = sizeof(delegate) + sizeof(void*);
  EXPECT_FALSE(zib_messaging_set_delegate(&delegate));
  EXPECT_EQ(device.errorLines().size(), 1U);
  EXPECT_EQ(notes.text, ""s);
  EXPECT_TRUE(zib_messaging_has_delegate());
}

// State.

TEST(ZibCStateTest, IsAbsentBeforeAnyRegistration) {
  const Device device;
  EXPECT_FALSE(zib_messaging_is_push_enabled());
  EXPECT_EQ(zib_messaging_copy_fcm_token().bytes, nullptr);
  EXPECT_EQ(zib_messaging_copy_apns_token(), nullptr);
  EXPECT_EQ(zib_push_config_copy_saved_firebase_plist_path().bytes, nullptr);
  EXPECT_EQ(taken(zib_messaging_copy_notification_event_schema_uri()),
            "iglu:com.zib/notification_event/jsonschema/3-0-0");
}

TEST(ZibCStateTest, IsTheCallersOwn) {
  const Device device;
  zib_messaging_set_push_token(deviceToken().raw());
  zib_messaging_set_fcm_token(zib_text_of("fcm-token"));
  EXPECT_EQ(taken(zib_messaging_copy_fcm_token()), "fcm-token");
  const zib_object token = zib_messaging_copy_apns_token();
  const auto bytes = zib::bytesOf(token);
  EXPECT_EQ(zib::Bytes(bytes.begin(), bytes.end()), (zib::Bytes{0x8f, 0x3a}));
  zib_object_release(token);
}

TEST(ZibCStateTest, HasARuntimeObject) {
  const Device device;
  EXPECT_STREQ(zib::Class::ofObject(zib_messaging_runtime_object()).name(), "ZibMessaging");
}

TEST(ZibCStateTest, HasTheVendorOfTheHost) {
  const Device device;
  EXPECT_FALSE(zib_messaging_set_event_vendor(zib_text_of("no vendor")));
  EXPECT_EQ(device.errorLines().size(), 1U);
  EXPECT_TRUE(zib_messaging_set_event_vendor(zib_text_of("com.example")));
  EXPECT_EQ(taken(zib_messaging_copy_notification_event_schema_uri()),
            "iglu:com.example/notification_event/jsonschema/3-0-0");
}

TEST(ZibCStateTest, HasAVersion) {
  EXPECT_STREQ(zib_version().bytes, ZIB_VERSION);
  EXPECT_EQ(zib_version().size, std::strlen(ZIB_VERSION));
}

// How delegates are found.

TEST(ZibCDelegateDiscoveryTest, IsOnceUnlessTheHostAsksForMore) {
  const Device device;
  EXPECT_EQ(zib_messaging_delegate_discovery(), ZIB_DELEGATE_DISCOVERY_ONCE_WITH_RETRY);
  EXPECT_TRUE(zib_messaging_set_delegate_discovery(ZIB_DELEGATE_DISCOVERY_CONTINUOUS));
  EXPECT_EQ(zib_messaging_delegate_discovery(), ZIB_DELEGATE_DISCOVERY_CONTINUOUS);
  EXPECT_EQ(device.errorLines(), Lines());
}

TEST(ZibCDelegateDiscoveryTest, RefusesWhatIsNone) {
  const Device device;
  EXPECT_FALSE(zib_messaging_set_delegate_discovery(2));
  EXPECT_FALSE(zib_messaging_set_delegate_discovery(-1));
  EXPECT_EQ(zib_messaging_delegate_discovery(), ZIB_DELEGATE_DISCOVERY_ONCE_WITH_RETRY);
  EXPECT_EQ(device.errorLines(),
            (Lines{"zib_messaging_set_delegate_discovery: discovery 2 is unknown; 0 (once, with a "
                   "retry) and 1 (continuous) are allowed",
                   "zib_messaging_set_delegate_discovery: discovery -1 is unknown; 0 (once, with a "
                   "retry) and 1 (continuous) are allowed"}));
}

TEST(ZibCDelegateDiscoveryTest, ComesBeforeConfigure) {
  const Device device;
  zib_messaging_configure(Device::application().native());
  EXPECT_FALSE(zib_messaging_set_delegate_discovery(ZIB_DELEGATE_DISCOVERY_CONTINUOUS));
  EXPECT_EQ(zib_messaging_delegate_discovery(), ZIB_DELEGATE_DISCOVERY_ONCE_WITH_RETRY);
  EXPECT_EQ(device.errorLines(),
            Lines{"ZibMessaging: the delegate discovery comes after configure() and is not taken"});
}

// The integration report.

class ZibCIntegrationReportTest : public testing::Test {
 protected:
  ZibCIntegrationReportTest() {
    zib_messaging_configure(Device::application().native());
    Device::advance(2);
    device_.forget();
    report_.reset(zib_integration_report_create());
  }

  // The module's own notification methods, which it has intercepted.
  static constexpr std::size_t presentation = 4;

  Device device_;
  std::unique_ptr<zib_integration_report, void (*)(zib_integration_report*)> report_{
      nullptr, &zib_integration_report_free};
};

TEST_F(ZibCIntegrationReportTest, HasEveryRow) {
  ASSERT_EQ(zib_integration_report_row_count(report_.get()), 7U);
  zib_integration_row row{};
  row.size = sizeof(row);
  ASSERT_TRUE(zib_integration_report_get_row(report_.get(), presentation, &row));
  EXPECT_EQ(row.size, sizeof(row));
  EXPECT_STREQ(row.method.bytes,
               "userNotificationCenter:willPresentNotification:withCompletionHandler:");
  EXPECT_STREQ(row.delegate_class.bytes, "ZibMessaging");
  EXPECT_EQ(row.state, ZIB_INTEGRATION_SWAPPED);
  EXPECT_EQ(row.remark_count, 0U);
  ASSERT_EQ(row.function_count, 2U);
  zib_integration_function function{};
  function.size = sizeof(function);
  ASSERT_TRUE(zib_integration_report_get_function(report_.get(), presentation, 0, &function));
  EXPECT_EQ(function.image.bytes, test::imageOfModule());
  EXPECT_STREQ(function.symbol.bytes,
               "-[ZibSwizzleManager zib_willPresent:notification:completionHandler:]");
  EXPECT_EQ(device_.errorLines(), Lines());
}

TEST_F(ZibCIntegrationReportTest, SaysWhatIsMissing) {
  zib_integration_row row{};
  row.size = sizeof(row);
  ASSERT_TRUE(zib_integration_report_get_row(report_.get(), 0, &row));
  EXPECT_EQ(row.delegate_class.bytes, nullptr);
  EXPECT_EQ(row.state, ZIB_INTEGRATION_NONE);
  EXPECT_EQ(row.function_count, 0U);
  ASSERT_EQ(row.remark_count, 1U);
  EXPECT_STREQ(zib_integration_report_remark(report_.get(), 0, 0).bytes, "no application delegate");
  EXPECT_NE(
      std::string(zib_integration_report_text(report_.get()).bytes).find("no application delegate"),
      std::string::npos);
}

TEST_F(ZibCIntegrationReportTest, StaysAsItWas) {
  const std::string before = zib_integration_report_text(report_.get()).bytes;
  sim::usernotifications::setDelegate({});
  EXPECT_EQ(zib_integration_report_text(report_.get()).bytes, before);
}

TEST_F(ZibCIntegrationReportTest, FillsInWhatAnOlderHostKnows) {
  constexpr std::size_t older = offsetof(zib_integration_row, state);
  zib_integration_row row{};
  row.size = older;
  row.state = -1;
  ASSERT_TRUE(zib_integration_report_get_row(report_.get(), presentation, &row));
  EXPECT_EQ(row.size, older);
  EXPECT_STREQ(row.delegate_class.bytes, "ZibMessaging");
  EXPECT_EQ(row.state, -1);
}

TEST_F(ZibCIntegrationReportTest, FillsInWhatANewerHostHasRoomFor) {
  struct Newer {
    zib_integration_row row{};
    void* added = this;
  } newer;
  newer.row.size = sizeof(newer);
  ASSERT_TRUE(zib_integration_report_get_row(report_.get(), presentation, &newer.row));
  EXPECT_EQ(newer.row.state, ZIB_INTEGRATION_SWAPPED);
  EXPECT_EQ(newer.added, &newer);
}

TEST_F(ZibCIntegrationReportTest, RefusesSizesThatNoVersionHas) {
  zib_integration_row row{};
  zib_integration_function function{};
  // The latter two end within a text.
  const std::size_t sizes[] = {0, sizeof(std::size_t), sizeof(row) - 1,
                               offsetof(zib_integration_row, method.size),
                               offsetof(zib_integration_row, delegate_class.size)};
  for (const std::size_t size : sizes) {
    row.size = size;
    function.size = size;
    EXPECT_FALSE(zib_integration_report_get_row(report_.get(), presentation, &row)) << size;
    EXPECT_FALSE(zib_integration_report_get_function(report_.get(), presentation, 0, &function))
        << size;
    EXPECT_EQ(row.method.bytes, nullptr);
    EXPECT_EQ(function.image.bytes, nullptr);
  }
  ASSERT_EQ(device_.errorLines().size(), 2 * std::size(sizes));
  EXPECT_EQ(device_.errorLines()[0],
            "zib_integration_report_get_row: size 0 is that of no zib_integration_row; this "
            "version's is " +
                std::to_string(sizeof(row)));
}

TEST_F(ZibCIntegrationReportTest, SaysWhatThereIsNot) {
  zib_integration_row row{};
  row.size = sizeof(row);
  zib_integration_function function{};
  function.size = sizeof(function);
  EXPECT_FALSE(zib_integration_report_get_row(report_.get(), 7, &row));
  EXPECT_FALSE(zib_integration_report_get_function(report_.get(), presentation, 2, &function));
  EXPECT_FALSE(zib_integration_report_get_function(report_.get(), 7, 0, &function));
  EXPECT_EQ(zib_integration_report_remark(report_.get(), presentation, 0).bytes, nullptr);
  EXPECT_EQ(device_.errorLines(),
            (Lines{"zib_integration_report_get_row: there is no row 7; there are 7",
                   "zib_integration_report_get_function: there is no function 2; there are 2",
                   "zib_integration_report_get_function: there is no row 7; there are 7",
                   "zib_integration_report_remark: there is no remark 0; there are 0"}));
}

// Text.

TEST(ZibTextTest, ThatIsNoUtf8IsReplacedAndNeverCut) {
  const Device device;
  zib_messaging_set_push_token(deviceToken().raw());
  const std::string sent = "a\xff\0b\xe2\x82"s + "c\xf0\x9f\x98\x80"s;
  zib_messaging_set_fcm_token({sent.data(), sent.size()});
  EXPECT_EQ(taken(zib_messaging_copy_fcm_token()),
            "a\xef\xbf\xbd\0b\xef\xbf\xbd"s + "c\xf0\x9f\x98\x80"s);
}

TEST(ZibTextTest, OfTheModuleEndsWithANul) {
  static std::vector<std::string> seen;
  const Device device;
  zib_messaging_delegate delegate{};
  delegate.size = sizeof(delegate);
  delegate.did_receive_token = [](void*, zib_text token) {
    EXPECT_EQ(std::strlen(token.bytes), token.size);
    seen.emplace_back(token.bytes);
  };
  zib_messaging_set_delegate(&delegate);
  zib_messaging_set_push_token(deviceToken().raw());
  std::vector<std::string> sent;
  for (const std::size_t length : {0U, 1U, 767U, 768U, 769U, 100000U}) {
    sent.emplace_back(length, 't');
    zib_messaging_set_fcm_token({sent.back().data(), sent.back().size()});
  }
  EXPECT_EQ(seen, sent);
}

TEST(ZibTextTest, IsCopiedWhole) {
  const std::string text = "one\0two"s;
  EXPECT_EQ(taken(zib_text_copy({text.data(), text.size()})), text);
  EXPECT_EQ(taken(zib_text_copy(zib_text_of(""))), "");
  EXPECT_EQ(zib_text_copy(zib_text_of(nullptr)).bytes, nullptr);
  zib_text_free(zib_text{});
}

TEST(ZibTextTest, IsAllOfAString) {
  const Device device;
  const std::string text = "a\0\xc3\xa9"s;
  const zib_object string = zib_string_create({text.data(), text.size()});
  EXPECT_EQ(taken(zib_string_copy(string)), text);
  zib_object_release(string);
  EXPECT_EQ(zib_string_create(zib_text{}), nullptr);
  EXPECT_EQ(zib_string_copy(payload().raw()).bytes, nullptr);
  EXPECT_EQ(device.errorLines(), std::vector{"zib_string_copy: string is no NSString"s});
}

TEST(ZibObjectTest, OneThatRaisesWhereItIsAskedForItsKindIsOneErrorLine) {
  const Device device;
  const auto isKind = +[](zib::objc::id, zib::objc::SEL, zib::objc::Class) -> zib::objc::BOOL {
    test::raise(Thrown::platform);
  };
  const zib::Object raising =
      zib::create(zib::ClassBuilder("Kindless", zib::classNamed<"NSObject">())
                      .method("isKindOfClass:", isKind)
                      .registerClass());
  EXPECT_EQ(zib_string_copy(raising.raw()).bytes, nullptr);
  EXPECT_EQ(device.errorLines(),
            std::vector{"ZibMessaging: stopped an exception in zib_string_copy"s});
}

// What is missing, or of another class than is asked for.

struct Missing {
  const char* name;
  void (*call)();
  const char* problem;
};

void PrintTo(const Missing& missing, std::ostream* stream) { *stream << missing.name; }

class ZibCMissingArgumentTest : public testing::TestWithParam<Missing> {};

TEST_P(ZibCMissingArgumentTest, IsOneErrorLine) {
  const Device device;
  GetParam().call();
  Device::drain();
  ASSERT_EQ(device.entries().size(), 1U);
  EXPECT_EQ(device.errorLines(), std::vector{GetParam().name + ": "s + GetParam().problem});
}

const Missing everyMissing[] = {
    {"zib_core_install", [] { EXPECT_FALSE(zib_core_install(nullptr)); }, "core is null"},
    {"zib_messaging_set_event_vendor",
     [] { EXPECT_FALSE(zib_messaging_set_event_vendor(zib_text{})); }, "vendor is null"},
    {"zib_messaging_did_register_for_remote_notifications",
     [] { zib_messaging_did_register_for_remote_notifications(nullptr); }, "device_token is null"},
    {"zib_messaging_did_register_for_remote_notifications",
     [] { zib_messaging_did_register_for_remote_notifications(payload().raw()); },
     "device_token is no NSData"},
    {"zib_messaging_set_push_token", [] { zib_messaging_set_push_token(nullptr); },
     "device_token is null"},
    {"zib_messaging_set_fcm_token", [] { zib_messaging_set_fcm_token(zib_text{}); },
     "token is null"},
    {"zib_messaging_did_receive_registration_token",
     [] { zib_messaging_did_receive_registration_token(zib_text{}); }, "token is null"},
    {"zib_messaging_will_present", [] { EXPECT_EQ(zib_messaging_will_present(nullptr), 0U); },
     "notification is null"},
    {"zib_messaging_will_present",
     [] { EXPECT_EQ(zib_messaging_will_present(response().raw()), 0U); },
     "notification is no UNNotification"},
    {"zib_messaging_did_receive", [] { zib_messaging_did_receive(nullptr); }, "response is null"},
    {"zib_messaging_did_receive", [] { zib_messaging_did_receive(text().raw()); },
     "response is no UNNotificationResponse"},
    {"zib_messaging_track_notification_received",
     [] { zib_messaging_track_notification_received(nullptr); }, "user_info is null"},
    {"zib_messaging_track_notification_received",
     [] { zib_messaging_track_notification_received(text().raw()); },
     "user_info is no NSDictionary"},
    {"zib_messaging_track_notification_opened",
     [] { zib_messaging_track_notification_opened(nullptr); }, "user_info is null"},
    {"zib_messaging_track_notification_opened",
     [] { zib_messaging_track_notification_opened(notification().raw()); },
     "user_info is no NSDictionary"},
    {"zib_deep_link_handler_handle_notification_url",
     [] { EXPECT_FALSE(zib_deep_link_handler_handle_notification_url(nullptr)); },
     "user_info is null"},
    {"zib_deep_link_handler_handle_notification_url",
     [] { EXPECT_FALSE(zib_deep_link_handler_handle_notification_url(text().raw())); },
     "user_info is no NSDictionary"},
    {"zib_deep_link_handler_handle_url",
     [] { EXPECT_FALSE(zib_deep_link_handler_handle_url(nullptr, zib_text_of("s"))); },
     "url is null"},
    {"zib_deep_link_handler_handle_url",
     [] { EXPECT_FALSE(zib_deep_link_handler_handle_url(payload().raw(), zib_text_of("s"))); },
     "url is no NSURL"},
    {"zib_deep_link_handler_handle_url",
     [] {
       const auto url = zib::URL::parse("https://example.com");
       EXPECT_FALSE(zib_deep_link_handler_handle_url(url->native(), zib_text{}));
     },
     "source is null"},
    {"zib_push_config_configure_push",
     [] {
       zib_push_config_configure_push(Device::application().native(), zib_text{}, nullptr, nullptr,
                                      nullptr, nullptr);
     },
     "firebase_config_handler is null"},
    {"zib_payload_builder_create_notification_payload",
     [] {
       EXPECT_EQ(zib_payload_builder_create_notification_payload(nullptr, zib_text_of("e")),
                 nullptr);
     },
     "user_info is null"},
    {"zib_payload_builder_create_notification_payload",
     [] {
       EXPECT_EQ(zib_payload_builder_create_notification_payload(payload().raw(), zib_text{}),
                 nullptr);
     },
     "event_type is null"},
    {"zib_payload_builder_create_notification_payload",
     [] {
       EXPECT_EQ(zib_payload_builder_create_notification_payload(text().raw(), zib_text_of("e")),
                 nullptr);
     },
     "user_info is no NSDictionary"},
    {"zib_payload_builder_create_event_payload",
     [] { EXPECT_EQ(zib_payload_builder_create_event_payload(zib_text{}, nullptr), nullptr); },
     "event_name is null"},
    {"zib_payload_builder_create_event_payload",
     [] {
       EXPECT_EQ(zib_payload_builder_create_event_payload(zib_text_of("e"), text().raw()), nullptr);
     },
     "properties is no NSDictionary"},
    {"zib_integration_report_text",
     [] { EXPECT_EQ(zib_integration_report_text(nullptr).bytes, nullptr); }, "report is null"},
    {"zib_integration_report_row_count",
     [] { EXPECT_EQ(zib_integration_report_row_count(nullptr), 0U); }, "report is null"},
    {"zib_integration_report_get_row",
     [] { EXPECT_FALSE(zib_integration_report_get_row(nullptr, 0, nullptr)); }, "report is null"},
    {"zib_integration_report_get_row",
     [] {
       zib_integration_report* const report = zib_integration_report_create();
       EXPECT_FALSE(zib_integration_report_get_row(report, 0, nullptr));
       zib_integration_report_free(report);
     },
     "result is null"},
    {"zib_integration_report_get_function",
     [] { EXPECT_FALSE(zib_integration_report_get_function(nullptr, 0, 0, nullptr)); },
     "report is null"},
    {"zib_integration_report_remark",
     [] { EXPECT_EQ(zib_integration_report_remark(nullptr, 0, 0).bytes, nullptr); },
     "report is null"},
    {"zib_string_copy", [] { EXPECT_EQ(zib_string_copy(nullptr).bytes, nullptr); },
     "string is null"},
    {"zib_json_copy", [] { EXPECT_EQ(zib_json_copy(nullptr).bytes, nullptr); }, "object is null"},
    {"zib_json_create", [] { EXPECT_EQ(zib_json_create(zib_text{}), nullptr); }, "json is null"},
};

INSTANTIATE_TEST_SUITE_P(EachOperation, ZibCMissingArgumentTest, testing::ValuesIn(everyMissing));

// Contexts.

TEST(ZibCContextTest, OfAURLDelegateIsReleasedOnce) {
  const Device device;
  int first = 0;
  int second = 0;
  int third = 0;
  const auto handles = [](void*, zib_object url, zib_text text) {
    return url != nullptr && std::string(text.bytes) == "https://example.com/link";
  };
  zib_deep_link_handler_set_url_delegate(handles, &first, &countRelease);
  EXPECT_TRUE(zib_deep_link_handler_has_url_delegate());
  EXPECT_TRUE(zib_deep_link_handler_handle_notification_url(
      zib::objectFrom(ValueMap{{"link", "https://example.com/link"}}).raw()));
  EXPECT_EQ(device.infoLines().back(), "ZibDeepLinkHandler: Handled by urlDelegate");
  EXPECT_EQ(first, 0);
  zib_deep_link_handler_set_url_delegate(handles, &second, &countRelease);
  EXPECT_EQ(first, 1);
  // A context that comes without a function is of no use to anybody.
  zib_deep_link_handler_set_url_delegate(nullptr, &third, &countRelease);
  EXPECT_FALSE(zib_deep_link_handler_has_url_delegate());
  EXPECT_EQ(first + second + third, 3);
}

struct FlowNotes {
  std::vector<bool> completed;
  std::vector<std::string> configs;
  int released = 0;

  void start(zib_object application, const char* endpoint, bool withCompletion = true) {
    zib_push_config_configure_push(
        application, zib_text_of(endpoint),
        [](void* context, zib_object config) {
          static_cast<FlowNotes*>(context)->configs.push_back(taken(zib_json_copy(config)));
        },
        withCompletion ? [](void* context, bool started) {
          EXPECT_EQ(static_cast<FlowNotes*>(context)->released, 0);
          static_cast<FlowNotes*>(context)->completed.push_back(started);
        } : static_cast<zib_push_config_completion>(nullptr),
        this, [](void* context) { ++static_cast<FlowNotes*>(context)->released; });
  }
};

TEST(ZibCContextTest, OfAFlowIsReleasedOnceWhenItSucceeded) {
  test::PushFlow flow;
  flow.connect();
  FlowNotes notes;
  notes.start(Device::application().native(), test::configurationURL);
  Device::drain();
  EXPECT_EQ(notes.completed, std::vector{true});
  EXPECT_EQ(notes.configs, std::vector{R"({"API_KEY":"k-1","IS_ADS_ENABLED":false})"s});
  EXPECT_EQ(notes.released, 1);
  EXPECT_EQ(taken(zib_push_config_copy_saved_firebase_plist_path()), flow.storedFile());
}

TEST(ZibCContextTest, OfAFlowIsReleasedOnceWhenItFailed) {
  test::PushFlow flow;
  flow.serve(test::Request::configuration, test::broken(sim::Fault::reset));
  flow.connect();
  FlowNotes notes;
  notes.start(Device::application().native(), test::configurationURL);
  Device::drain();
  EXPECT_EQ(notes.completed, std::vector{false});
  EXPECT_EQ(notes.released, 1);
}

TEST(ZibCContextTest, OfAFlowIsReleasedOnceWhereNothingBegan) {
  const Device device;
  FlowNotes notes;
  notes.start(Device::application().native(), nullptr);
  EXPECT_EQ(notes.completed, std::vector{false});
  EXPECT_EQ(notes.released, 1);
  notes.start(Device::application().native(), "", false);
  EXPECT_EQ(notes.released, 2);
}

// What a host throws.

class ZibCThrowingHostTest : public testing::TestWithParam<Thrown> {
 protected:
  static Thrown kind;
  void SetUp() override { kind = GetParam(); }
};
Thrown ZibCThrowingHostTest::kind = Thrown::standard;

TEST_P(ZibCThrowingHostTest, StopsAtTheSurface) {
  const Device device;
  zib_messaging_delegate delegate{};
  delegate.size = sizeof(delegate);
  delegate.release = [](void*) { test::raise(kind); };
  delegate.did_receive_token = [](void*, zib_text) { test::raise(kind); };
  delegate.did_receive_notification = [](void*, zib_object) { test::raise(kind); };
  zib_messaging_set_delegate(&delegate);
  zib_messaging_set_push_token(deviceToken().raw());
  zib_messaging_set_fcm_token(zib_text_of("fcm-token"));
  EXPECT_EQ(zib_messaging_will_present(notification().raw()), 19U);
  zib_messaging_set_delegate(nullptr);
  EXPECT_EQ(device.errorLines().size(), 3U);
}

TEST_P(ZibCThrowingHostTest, MayBeTheCore) {
  sim::foundation::install();
  zib_core core{};
  core.size = sizeof(core);
  core.config = [](void*, zib_config*) -> bool { test::raise(kind); };
  core.copy_push_config_endpoint = [](void*) -> zib_text { test::raise(kind); };
  core.log = [](void*, zib_text) { test::raise(kind); };
  core.error = [](void*, zib_text, const zib_error*) { test::raise(kind); };
  core.track_self_describing_event = [](void*, zib_text, zib_object) { test::raise(kind); };
  core.save_fcm_token = [](void*, zib_text) { test::raise(kind); };
  ASSERT_TRUE(zib_core_install(&core));
  zib_messaging_configure(nullptr);
  zib_messaging_did_register_for_remote_notifications(deviceToken().raw());
  zib_messaging_set_fcm_token(zib_text_of("fcm-token"));
  zib_messaging_track_notification_opened(payload().raw());
  zib_messaging_register_for_push(nullptr);
}

INSTANTIATE_TEST_SUITE_P(EveryException, ZibCThrowingHostTest, testing::ValuesIn(test::everyThrown),
                         test::rowName);

// Payloads and JSON.

TEST(ZibCPayloadTest, IsTheSameAsTheModules) {
  const Device device;
  const zib_object made =
      zib_payload_builder_create_notification_payload(payload().raw(), zib_text_of("opened"));
  const ValueMap values = *zib::Dictionary::retained(made).values();
  EXPECT_EQ(values.size(), 14U);
  EXPECT_EQ(*values.find("event_type"), Value("opened"));
  EXPECT_EQ(*values.find("pn_campaign_id"), Value("autumn"));
  zib_object_release(made);
}

TEST(ZibCPayloadTest, OfAnEventHasPropertiesOnlyWhereThereAreSome) {
  const Device device;
  const zib_object bare = zib_payload_builder_create_event_payload(zib_text_of("e"), nullptr);
  EXPECT_EQ(zib::Dictionary::retained(bare).values()->size(), 3U);
  zib_object_release(bare);
  const zib_object full =
      zib_payload_builder_create_event_payload(zib_text_of("e"), payload().raw());
  EXPECT_EQ(*zib::Dictionary::retained(full).values()->find("properties"),
            Value(ValueMap{{"pn_campaign_id", "autumn"}}));
  zib_object_release(full);
}

// Deeper than is taken.
std::vector<Object> deepDictionaries() {
  std::vector<Object> all{zib::objectFrom(ValueMap())};
  for (int level = 0; level < 300; ++level) {
    const Object outer = zib::objectFrom(ValueMap());
    zib::send<void>(outer.raw(), zib::selector<"setObject:forKey:">(), all.back().raw(),
                    zib::makeString("in").raw());
    all.push_back(outer);
  }
  return all;
}

TEST(ZibCPayloadTest, GoesOnWithoutPropertiesThatAreTooDeep) {
  const Device device;
  const auto deep = deepDictionaries();
  const zib_object event =
      zib_payload_builder_create_event_payload(zib_text_of("e"), deep.back().raw());
  EXPECT_EQ(zib::Dictionary::retained(event).values()->size(), 3U);
  zib_object_release(event);
  EXPECT_EQ(device.errorLines(),
            Lines{"zib_payload_builder_create_event_payload: properties are left out: nested too "
                  "deep at \"in\"; 256 levels are allowed"});
}

TEST(ZibJSONTest, IsNoneOfWhatIsTooDeep) {
  const Device device;
  const auto deep = deepDictionaries();
  EXPECT_EQ(zib_json_copy(deep.back().raw()).bytes, nullptr);
  EXPECT_EQ(device.errorLines(),
            Lines{"zib_json_copy: object cannot be written: nested too deep at "
                  "\"in\"; 256 levels are allowed"});
}

TEST(ZibJSONTest, HasWordsForEveryValue) {
  sim::foundation::install();
  const Object object = zib::objectFrom(ValueMap{
      {"all", zib::Array{zib::Null(), true, -1, 1.5, "a\"\\\n\u00e9", zib::Bytes{1, 2, 3, 4},
                         zib::Date{0}, zib::Array(), ValueMap()}}});
  EXPECT_EQ(taken(zib_json_copy(object.raw())),
            R"({"all":[null,true,-1,1.5,"a\"\\\u000aé","AQIDBA==","1970-01-01T00:00:00Z",[],{}]})");
}

TEST(ZibJSONTest, IsReadAsThePlatformReadsIt) {
  const Device device;
  const zib_object object = zib_json_create(zib_text_of(R"({"a":[1,"b"]})"));
  EXPECT_EQ(*zib::Dictionary::retained(object).values(), (ValueMap{{"a", zib::Array{1, "b"}}}));
  zib_object_release(object);
  EXPECT_EQ(zib_json_create(zib_text_of("{")), nullptr);
  EXPECT_EQ(device.errorLines(), std::vector{"zib_json_create: json cannot be read"s});
}

}  // namespace
