// How the core library hands its services to the module.

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

#include "ZibCoreBoundary/Zib.h"
#include "ZibCoreBoundary/ZibLogger.h"
#include "ZibCoreBoundary/ZibStorage.h"

namespace {

class CountingLogger final : public ZibLogger {
 public:
  ~CountingLogger() override { ++destroyed; }
  void log(std::string_view) override { ++lines; }
  void error(std::string_view, const std::optional<zib::Error>&) override { ++lines; }

  std::atomic<int> lines = 0;
  static inline std::atomic<int> destroyed = 0;
};

class CountingCore final : public Zib {
 public:
  explicit CountingCore(int& destroyed) : destroyed_(destroyed) {}
  ~CountingCore() override { ++destroyed_; }
  [[nodiscard]] std::optional<ZibConfig> config() const override { return ZibConfig{false}; }
  void trackSelfDescribingEvent(std::string_view, const zib::ValueMap&) override {}
  [[nodiscard]] std::optional<std::string> pushConfigEndpoint() const override { return "e"; }
  void registerPushToken(std::string_view) override {}

 private:
  int& destroyed_;
};

class CountingStorage final : public ZibStorage {
 public:
  explicit CountingStorage(int& destroyed) : destroyed_(destroyed) {}
  ~CountingStorage() override { ++destroyed_; }
  void savePushPermission(bool) override { ++saved; }
  void saveFCMToken(std::string_view) override { ++saved; }

  int saved = 0;

 private:
  int& destroyed_;
};

TEST(CoreBoundaryTest, IsSilentUntilTheCoreInstallsItself) {
  ZibLogger::shared().log("dropped");
  ZibLogger::shared().error("dropped", std::nullopt);
  EXPECT_FALSE(Zib::shared().config());
  EXPECT_EQ(Zib::shared().pushConfigEndpoint(), std::nullopt);
  Zib::shared().trackSelfDescribingEvent("dropped", {});
  Zib::shared().registerPushToken("dropped");
  ZibStorage::shared().savePushPermission(true);
  ZibStorage::shared().saveFCMToken("dropped");
}

TEST(CoreBoundaryTest, TheFirstInstalledLoggerStays) {
  auto logger = std::make_unique<CountingLogger>();
  CountingLogger& first = *logger;
  EXPECT_TRUE(ZibLogger::install(std::move(logger)));
  EXPECT_FALSE(ZibLogger::install(std::make_unique<CountingLogger>()));
  EXPECT_EQ(CountingLogger::destroyed, 1);
  EXPECT_EQ(&ZibLogger::shared(), &first);
  ZibLogger::shared().log("one");
  ZibLogger::shared().error("two", zib::Error{});
  EXPECT_EQ(first.lines, 2);
}

TEST(CoreBoundaryTest, TheFirstInstalledCoreStays) {
  int firstDestroyed = 0;
  int secondDestroyed = 0;
  EXPECT_TRUE(Zib::install(std::make_unique<CountingCore>(firstDestroyed)));
  EXPECT_FALSE(Zib::install(std::make_unique<CountingCore>(secondDestroyed)));
  EXPECT_EQ(firstDestroyed, 0);
  EXPECT_EQ(secondDestroyed, 1);
  EXPECT_FALSE(Zib::shared().config()->autoSwizzlingEnabled);
  EXPECT_EQ(Zib::shared().pushConfigEndpoint(), "e");
}

TEST(CoreBoundaryTest, TheFirstInstalledStorageStays) {
  int firstDestroyed = 0;
  int secondDestroyed = 0;
  auto storage = std::make_unique<CountingStorage>(firstDestroyed);
  const CountingStorage& first = *storage;
  EXPECT_TRUE(ZibStorage::install(std::move(storage)));
  EXPECT_FALSE(ZibStorage::install(std::make_unique<CountingStorage>(secondDestroyed)));
  EXPECT_EQ(secondDestroyed, 1);
  ZibStorage::shared().savePushPermission(true);
  ZibStorage::shared().saveFCMToken("token");
  EXPECT_EQ(first.saved, 2);
}

TEST(CoreBoundaryTest, NothingIsNoService) {
  EXPECT_FALSE(ZibLogger::install(nullptr));
  ZibLogger::shared().log("dropped");
  EXPECT_TRUE(ZibLogger::install(std::make_unique<CountingLogger>()));
}

TEST(CoreBoundaryTest, OfManyThreadsThatInstallOneSucceeds) {
  constexpr int threadCount = 8;
  std::atomic<int> installed = 0;
  std::vector<std::thread> threads;
  for (int index = 0; index < threadCount; ++index) {
    threads.emplace_back([&] {
      ZibLogger::shared().log("any time");
      installed += ZibLogger::install(std::make_unique<CountingLogger>()) ? 1 : 0;
      ZibLogger::shared().log("any time");
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(installed, 1);
  EXPECT_EQ(CountingLogger::destroyed, threadCount - 1);
  EXPECT_GE(static_cast<CountingLogger&>(ZibLogger::shared()).lines, threadCount);
}

}  // namespace
