#include "ZibMessaging/ZibPushConfig.h"

#include <atomic>
#include <utility>

#include "ZibCoreBoundary/Zib.h"
#include "ZibCoreBoundary/ZibLogger.h"
#include "ZibMessaging/Private/Containment.h"
#include "ZibMessaging/Private/LogLine.h"
#include "ZibMessaging/Private/RemotePushConfig.h"
#include "ZibMessaging/ZibMessaging.h"
#include "ZibMessaging/ZibPushError.h"
#include "ZibPlatform/Dispatch/MainQueue.h"
#include "ZibPlatform/Foundation/Files.h"
#include "ZibPlatform/Foundation/PropertyList.h"
#include "ZibPlatform/Foundation/URLSession.h"
#include "ZibPlatform/ObjectiveC/NeverDestroyed.h"

using zib::contained;
using zib::logLine;
using zib::readFirebasePlist;
using zib::readPushConfig;
using zib::RemotePushConfig;

namespace {

constexpr std::string_view storedPlistName = "GoogleService-Info.plist";
constexpr double configTimeout = 30;  // seconds

std::optional<zib::Error> writePlist(const zib::URL& file, const zib::Dictionary& plist) {
  const auto bytes = zib::xmlPropertyList(plist);
  return bytes ? zib::writeFile(file, *bytes) : bytes.error();
}

void savePlistToDocuments(const zib::Dictionary& plist) {
  const auto file = zib::fileInDocuments(storedPlistName);
  if (!file) return;
  if (const auto error = writePlist(*file, plist)) {
    ZibLogger::shared().error("Failed to save Firebase plist", error);
    return;
  }
  logLine("Firebase plist saved to: ", zib::pathOf(*file));
}

}  // namespace

// One run of configurePush(), kept alive by the callback that it waits for. It holds the host's
// functions and the application, but not the ZibPushConfig that began it.
class ZibPushConfig::Flow final : public std::enable_shared_from_this<Flow> {
 public:
  Flow(std::weak_ptr<ZibPushConfig> config, zib::Application application,
       FirebaseConfigHandler firebaseConfigHandler, Completion completion)
      : config_(std::move(config)),
        application_(std::move(application)),
        firebaseConfigHandler_(std::move(firebaseConfigHandler)),
        completion_(std::move(completion)) {}

  void start(std::optional<std::string_view> configEndpoint) noexcept {
    step("configurePush", [&] {
      const std::optional<std::string> endpoint = configEndpoint
                                                      ? std::optional<std::string>(*configEndpoint)
                                                      : Zib::shared().pushConfigEndpoint();
      if (!endpoint) {
        ZibLogger::shared().error("Push config endpoint not available - SDK not initialized?",
                                  std::nullopt);
        finish(false);
        return;
      }
      logLine("Fetching push configuration from: ", *endpoint);
      fetchPushConfig(*endpoint);
    });
  }

 private:
  // The next callback, on whichever thread it comes. A step that breaks off ends the flow, so that
  // the host's completion is not lost with it; what the step may have begun before is not followed.
  template <class Work>
  void step(std::string_view operation, Work work) noexcept {
    if (isFinished_) return;
    if (!contained(operation, work)) finish(false);
  }

  void finish(bool isRegistering) noexcept {
    if (isFinished_.exchange(true)) return;
    const Completion completion = std::move(completion_);
    if (completion) {
      contained("the completion of configurePush", [&] { completion(isRegistering); });
    }
  }

  void fetchPushConfig(const std::string& endpoint) {
    const auto url = zib::URL::parse(endpoint);
    if (!url) {
      pushConfigFetched(zib::errorFrom(ZibPushError::invalidURL));
      return;
    }
    zib::URLSession::fetch({*url, "GET", {{"Content-Type", "application/json"}}, configTimeout},
                           [flow = shared_from_this()](const zib::URLReply& reply) {
                             flow->step("the answer to the push configuration request",
                                        [&] { flow->pushConfigFetched(readPushConfig(reply)); });
                           });
  }

  // If the ZibPushConfig is gone by now, the flow ends here without a word, even to the host.
  void pushConfigFetched(const zib::Result<RemotePushConfig>& config) {
    if (!config) {
      ZibLogger::shared().error("Failed to fetch push config", config.error());
      finish(false);
    } else if (!config->firebasePlistURL) {
      logLine("Push notifications disabled by remote config");
      finish(false);
    } else if (!config_.expired()) {
      downloadFirebasePlist(*config->firebasePlistURL);
    }
  }

  void downloadFirebasePlist(const zib::URL& url) {
    logLine("Downloading Firebase plist from: ", url.absoluteString());
    zib::URLSession::fetch(url, [flow = shared_from_this()](const zib::URLReply& reply) {
      flow->step("the answer to the Firebase plist request",
                 [&] { flow->firebasePlistDownloaded(readFirebasePlist(reply)); });
    });
  }

  void firebasePlistDownloaded(const zib::Result<zib::Dictionary>& plist) {
    if (!plist) {
      ZibLogger::shared().error("Failed to download Firebase plist", plist.error());
      finish(false);
      return;
    }
    contained("savePlistToDocuments", [&] { savePlistToDocuments(*plist); });
    logLine("Firebase plist downloaded and parsed successfully");
    ZibMessaging::shared().ensureFirebaseMessagingDelegate();
    contained("firebaseConfigHandler", [&] { firebaseConfigHandler_(*plist); });
    zib::mainQueue::async([flow = shared_from_this()] {
      flow->step("registering for push", [&] { flow->registerForPush(); });
    });
  }

  void registerForPush() {
    ZibMessaging::shared().registerForPush(application_);
    // Once more, for a Firebase that the host has configured meanwhile.
    ZibMessaging::shared().ensureFirebaseMessagingDelegate();
    finish(true);
  }

  std::weak_ptr<ZibPushConfig> config_;
  zib::Application application_;
  FirebaseConfigHandler firebaseConfigHandler_;
  Completion completion_;
  std::atomic<bool> isFinished_{false};
};

std::shared_ptr<ZibPushConfig>& ZibPushConfig::slot() {
  static zib::NeverDestroyed<std::shared_ptr<ZibPushConfig>> instance(
      [] { return std::make_shared<ZibPushConfig>(Key()); });
  return *instance;
}

ZibPushConfig& ZibPushConfig::shared() { return *slot(); }

void ZibPushConfig::configurePush(const zib::Application& application,
                                  std::optional<std::string_view> configEndpoint,
                                  FirebaseConfigHandler firebaseConfigHandler,
                                  Completion completion) noexcept {
  std::make_shared<Flow>(weak_from_this(), application, std::move(firebaseConfigHandler),
                         std::move(completion))
      ->start(configEndpoint);
}

void ZibPushConfig::registerForPushSimple(const zib::Application& application) noexcept {
  ZibMessaging::shared().registerForPush(application);
}

std::optional<std::string> ZibPushConfig::savedFirebasePlistPath() const noexcept {
  std::optional<std::string> stored;
  contained("savedFirebasePlistPath", [&] {
    const auto file = zib::fileInDocuments(storedPlistName);
    std::string path = file ? zib::pathOf(*file) : std::string();
    if (file && zib::fileExists(path)) stored = std::move(path);
  });
  return stored;
}
