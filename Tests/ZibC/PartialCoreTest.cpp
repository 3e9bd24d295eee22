// What configure says where a core in C++ has installed a part of itself alone.

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "Simulator/Foundation/Foundation.h"
#include "ZibC/zib.h"
#include "ZibCoreBoundary/Zib.h"
#include "ZibCoreBoundary/ZibLogger.h"

namespace {

class CoreInCxx final : public Zib {
 public:
  [[nodiscard]] std::optional<ZibConfig> config() const override { return ZibConfig{false}; }
  void trackSelfDescribingEvent(std::string_view, const zib::ValueMap&) override {}
  [[nodiscard]] std::optional<std::string> pushConfigEndpoint() const override { return {}; }
  void registerPushToken(std::string_view) override {}
};

class LoggerInCxx final : public ZibLogger {
 public:
  void log(std::string_view) override {}
  void error(std::string_view, const std::optional<zib::Error>&) override {}
};

TEST(ZibWithoutLoggerTest, IsSaidAsItIs) {
  sim::foundation::install();
  ASSERT_TRUE(Zib::install(std::make_unique<CoreInCxx>()));
  testing::internal::CaptureStderr();
  zib_messaging_configure(nullptr);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "ZibMessaging: configured without a ZibLogger: its log lines go nowhere\n");
}

TEST(ZibWithALoggerOnlyTest, IsSaidAsItIs) {
  sim::foundation::install();
  ASSERT_TRUE(ZibLogger::install(std::make_unique<LoggerInCxx>()));
  testing::internal::CaptureStderr();
  zib_messaging_configure(nullptr);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "ZibMessaging: configured without a Zib: its events go nowhere\n");
}

}  // namespace
