// One run of the flow that makes push depend on a remote switch: from the configuration document
// over the app's Firebase property list to the registration.

#pragma once

#include <atomic>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "ZibMessaging/Private/Containment.h"
#include "ZibMessaging/Private/Recording.h"
#include "ZibMessaging/Private/RemotePushConfig.h"
#include "ZibMessaging/ZibPushConfig.h"
#include "ZibPlatform/Foundation/Dictionary.h"
#include "ZibPlatform/Foundation/Result.h"
#include "ZibPlatform/Foundation/URL.h"
#include "ZibPlatform/Foundation/URLSession.h"
#include "ZibPlatform/UIKit/Application.h"

namespace zib {

// Kept alive by the callback that it waits for. It holds the host's functions and the application,
// but not the ZibPushConfig that began it.
class ConfigurePushFlow final : public std::enable_shared_from_this<ConfigurePushFlow> {
 public:
  using FirebaseConfigHandler = ZibPushConfig::FirebaseConfigHandler;
  using Completion = ZibPushConfig::Completion;

  ConfigurePushFlow(const std::weak_ptr<ZibPushConfig>& config, const Application& application,
                    FirebaseConfigHandler&& firebaseConfigHandler, Completion&& completion)
      : config_(config),
        application_(application),
        firebaseConfigHandler_(std::move(firebaseConfigHandler)),
        completion_(std::move(completion)) {}

  void start(std::optional<std::string_view> configEndpoint) noexcept;

 private:
  // The next callback, on whichever thread it comes. A step that breaks off ends the flow, so that
  // the host's completion is not lost with it; what the step may have begun before is not followed.
  template <class Work>
  void step(const char* operation, Work work) noexcept {
    if (isFinished_) return;
    const RecordedCall own;
    if (!contained(operation, work)) finish(false);
  }
  void finish(bool isRegistering) noexcept;

  // Takes a server's answer, and keeps the flow alive until then.
  struct ReplyHandler {
    void operator()(const URLReply& reply) const;

    std::shared_ptr<ConfigurePushFlow> flow;
    const char* operation;
    void (ConfigurePushFlow::*take)(const URLReply& reply);
  };

  void fetchPushConfig(const std::string& endpoint);
  void takePushConfig(const URLReply& reply) { pushConfigFetched(readPushConfig(reply)); }
  void pushConfigFetched(const Result<RemotePushConfig>& config);
  void downloadFirebasePlist(const URL& url);
  void takeFirebasePlist(const URLReply& reply) {
    firebasePlistDownloaded(readFirebasePlist(reply));
  }
  void firebasePlistDownloaded(const Result<Dictionary>& plist);
  void registerForPush();

  std::weak_ptr<ZibPushConfig> config_;
  Application application_;
  FirebaseConfigHandler firebaseConfigHandler_;
  Completion completion_;
  std::atomic<bool> isFinished_{false};
};

}  // namespace zib
