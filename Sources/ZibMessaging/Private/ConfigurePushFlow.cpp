#include "ZibMessaging/Private/ConfigurePushFlow.h"

#include <array>

#include "ZibCoreBoundary/Zib.h"
#include "ZibMessaging/Private/FirebasePlistFile.h"
#include "ZibMessaging/Private/LogLine.h"
#include "ZibMessaging/ZibMessaging.h"
#include "ZibMessaging/ZibPushError.h"
#include "ZibPlatform/Dispatch/MainQueue.h"
#include "ZibPlatform/UserNotifications/UserNotifications.h"

namespace zib {
namespace {

constexpr double configTimeout = 30;  // seconds
constexpr std::array<RequestField, 1> configFields{{{"Content-Type", "application/json"}}};

}  // namespace

void ConfigurePushFlow::start(std::optional<std::string_view> configEndpoint) noexcept {
  step("configurePush", [&] {
    const std::optional<std::string> endpoint = configEndpoint
                                                    ? std::optional<std::string>(*configEndpoint)
                                                    : Zib::shared().pushConfigEndpoint();
    if (!endpoint) {
      logError("Push config endpoint not available - SDK not initialized?");
      finish(false);
      return;
    }
    logLine("Fetching push configuration from: ", *endpoint);
    fetchPushConfig(*endpoint);
  });
}

void ConfigurePushFlow::finish(bool isRegistering) noexcept {
  if (isFinished_.exchange(true)) return;
  const Completion completion = std::move(completion_);
  if (completion) {
    const HostsTurn turn;
    contained("the completion of configurePush", [&] { completion(isRegistering); });
  }
}

void ConfigurePushFlow::ReplyHandler::operator()(const URLReply& reply) const {
  recording::told(recording::replied, flow.get(), reply);
  flow->step(operation, [&] { ((*flow).*take)(reply); });
}

void ConfigurePushFlow::fetchPushConfig(const std::string& endpoint) {
  const auto url = URL::parse(endpoint);
  if (!url) {
    pushConfigFetched(errorFrom(ZibPushError::invalidURL));
    return;
  }
  recording::told(recording::requested, this, *url);
  URLSession::fetch({*url, "GET", configFields, configTimeout},
                    ReplyHandler{shared_from_this(), "the answer to the push configuration request",
                                 &ConfigurePushFlow::takePushConfig});
}

// If the ZibPushConfig is gone by now, the flow ends here without a word, even to the host.
void ConfigurePushFlow::pushConfigFetched(const Result<RemotePushConfig>& config) {
  if (!config) {
    logError("Failed to fetch push config", config.failure());
    finish(false);
  } else if (!config->firebasePlistURL) {
    logLine("Push notifications disabled by remote config");
    finish(false);
  } else if (!config_.expired()) {
    downloadFirebasePlist(*config->firebasePlistURL);
  }
}

void ConfigurePushFlow::downloadFirebasePlist(const URL& url) {
  logLine("Downloading Firebase plist from: ", Utf8(url.text()).view());
  recording::told(recording::requested, this, url);
  URLSession::fetch(url,
                    ReplyHandler{shared_from_this(), "the answer to the Firebase plist request",
                                 &ConfigurePushFlow::takeFirebasePlist});
}

void ConfigurePushFlow::firebasePlistDownloaded(const Result<Dictionary>& plist) {
  if (!plist) {
    logError("Failed to download Firebase plist", plist.failure());
    finish(false);
    return;
  }
  contained("savePlistToDocuments", [&] { saveFirebasePlist(*plist); });
  logLine("Firebase plist downloaded and parsed successfully");
  ZibMessaging::shared().ensureFirebaseMessagingDelegate();
  recording::told(recording::handlerBegins);
  contained("firebaseConfigHandler", [&] {
    const HostsTurn turn;
    firebaseConfigHandler_(*plist);
  });
  recording::told(recording::handlerEnded);
  mainQueue::async([flow = shared_from_this()] {
    flow->step("registering for push", [&] { flow->registerForPush(); });
  });
}

void ConfigurePushFlow::registerForPush() {
  ZibMessaging::shared().registerForPush(application_);
  // Once more, for a Firebase that the host has configured meanwhile.
  ZibMessaging::shared().ensureFirebaseMessagingDelegate();
  finish(static_cast<bool>(NotificationCenter::current()));
}

}  // namespace zib
