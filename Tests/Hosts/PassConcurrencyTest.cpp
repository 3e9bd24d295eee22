// Callbacks on eight threads while the pass replaces their methods: none is lost for the host, and
// each answer and completion is the host's.

#include <atomic>
#include <thread>

#include "HostTest.h"
#include "ZibPlatform/ObjectiveC/AutoreleasePool.h"

namespace hosts {
namespace {

constexpr int threadCount = 8;
constexpr int roundCount = 100;

class PassConcurrencyTest : public HostTest {
 protected:
  // What the system does on one thread.
  void callBack() {
    ++running_;
    for (int round = 0; round < roundCount; ++round) {
      const zib::AutoreleasePool pool;
      test::deviceToken(delegate_.raw(), token_.raw());
      wrongAnswers_ += test::openURL(delegate_.raw(), url_.raw()) ? 1 : 0;
      test::willPresent(delegate_.raw(), notification_.raw(),
                        zib::Block<void(UInteger)>::from([this](UInteger options) {
                          ++completions_;
                          wrongAnswers_ += options == 5 ? 0 : 1;
                        }));
    }
  }

  Object delegate_ = make("Whole");
  Object token_ = zib::makeData(zib::Bytes{1});
  Object url_ = Object::retained(zib::URL::parse("app://open")->native());
  Object notification_ = sim::usernotifications::makeNotification({{"club", "gold"}});
  std::atomic<int> running_ = 0;
  std::atomic<int> completions_ = 0;
  std::atomic<int> wrongAnswers_ = 0;
};

TEST_F(PassConcurrencyTest, NoCallbackIsLost) {
  sim::uikit::setAppDelegate(delegate_);
  sim::usernotifications::setDelegate(delegate_);
  std::vector<std::thread> threads;
  for (int number = 0; number < threadCount; ++number) {
    threads.emplace_back([this] { callBack(); });
  }
  while (running_ < threadCount) std::this_thread::yield();
  configure();
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(completions_, threadCount * roundCount);
  EXPECT_EQ(wrongAnswers_, 0);
  device_.forget();
  test::deviceToken(delegate_.raw(), token_.raw());
  EXPECT_EQ(happened(), (Lines{"handled", "Whole didRegister"}));
}

}  // namespace
}  // namespace hosts
