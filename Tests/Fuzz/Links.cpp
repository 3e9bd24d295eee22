// A link of any kind as the system hands it to the app: the interceptor, campaign parameters and
// the lines about them.

#include <memory>
#include <string>

#include "Simulator/UIKit/UIKit.h"
#include "Simulator/UserNotifications/UserNotifications.h"
#include "Tests/Fuzz/Target.h"
#include "Tests/Support/Delegates.h"
#include "ZibCoreBoundary/ZibLogger.h"
#include "ZibMessaging/ZibDeepLinkHandler.h"
#include "ZibMessaging/ZibSwizzleManager.h"
#include "ZibPlatform/Foundation/URL.h"
#include "ZibPlatform/ObjectiveC/ClassBuilder.h"

namespace {

using zib::objc::BOOL;
using zib::objc::id;
using zib::objc::SEL;

bool isControl(unsigned char byte) { return byte < 0x20 || byte == 0x7F; }

class LineChecker : public ZibLogger {
 public:
  void log(std::string_view line) override {
    fuzz::require(std::none_of(line.begin(), line.end(), isControl), "a line stays one line");
    fuzz::require(zib::wellFormed(line) == line, "a line is UTF-8");
    ++lines;
  }
  void error(std::string_view line, const std::optional<zib::Error>& /*error*/) override {
    fuzz::require(line.empty(), "no link is an error");
  }

  std::size_t lines = 0;
};

BOOL refuse(id, SEL, id /*application*/, id /*url*/, id /*options*/) { return 0; }

// Its method does nothing else: what a host records would take most of a run's time.
id appDelegate() {
  static const zib::Object delegate =
      create(zib::ClassBuilder("FuzzedApp", zib::classNamed<"NSObject">())
                 .method("application:openURL:options:", &refuse)
                 .registerClass());
  return delegate.raw();
}

LineChecker* checker = nullptr;

}  // namespace

void fuzz::prepare() {
  sim::uikit::install(sim::uikit::ApplicationPresence::present, true);
  sim::usernotifications::install(std::nullopt);
  sim::uikit::setAppDelegate(zib::Object::retained(appDelegate()));
  ZibSwizzleManager::shared().setupAutoSwizzling();
  auto logger = std::make_unique<LineChecker>();
  checker = logger.get();
  ZibLogger::install(std::move(logger));
}

void fuzz::run(std::string_view input) {
  const auto url = zib::URL::parse(input);
  require(!url || !input.empty(), "an empty text is no URL");
  if (!url) return;
  const std::string text = url->text().utf8();
  const auto again = zib::URL::parse(text);
  require(again && again->text().utf8() == text, "a URL's text is the text of an equal URL");
  for (const zib::QueryItem& item : url->queryItems()) {
    const std::string name = item.name.utf8();
    const std::string value = item.value.utf8();
    require(zib::wellFormed(name) == name, "a name is UTF-8");
    require(zib::wellFormed(value) == value, "a value is UTF-8");
  }
  const std::size_t before = checker->lines;
  require(!test::openURL(appDelegate(), url->native()), "the host's answer is the answer");
  require(checker->lines > before, "a link that opens the app is logged");
  require(ZibDeepLinkHandler::shared().handleURL(*url, "fuzz"), "a link is recorded");
}
