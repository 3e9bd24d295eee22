#include "ZibMessaging/ZibPushConfig.h"

#include <memory>
#include <utility>

#include "ZibMessaging/Private/ConfigurePushFlow.h"
#include "ZibMessaging/Private/Containment.h"
#include "ZibMessaging/Private/FirebasePlistFile.h"
#include "ZibMessaging/Private/Recording.h"
#include "ZibMessaging/ZibMessaging.h"

using zib::contained;

ZibPushConfig& ZibPushConfig::shared() noexcept { return instance(); }

void ZibPushConfig::configurePush(const zib::Application& application,
                                  std::optional<std::string_view> configEndpoint,
                                  FirebaseConfigHandler firebaseConfigHandler,
                                  Completion completion) noexcept {
  const zib::RecordedCall call("configurePush", [&] {
    zib::ValueMap arguments{{"completion", static_cast<bool>(completion)}};
    if (configEndpoint) arguments.set("endpoint", *configEndpoint);
    return arguments;
  });
  contained("configurePush", [&] {
    std::make_shared<zib::ConfigurePushFlow>(
        weak_from_this(), application, std::move(firebaseConfigHandler), std::move(completion))
        ->start(configEndpoint);
  });
}

void ZibPushConfig::registerForPushSimple(const zib::Application& application) noexcept {
  const zib::RecordedCall call("registerForPushSimple");
  ZibMessaging::shared().registerForPush(application);
}

std::optional<std::string> ZibPushConfig::savedFirebasePlistPath() const noexcept {
  return zib::containedOr(std::optional<std::string>(), "savedFirebasePlistPath",
                          &zib::savedFirebasePlist);
}
