// The core library's storage, as far as the messaging module needs it.

#pragma once

#include <memory>
#include <string_view>

// Implemented by the core library. The module calls from any thread; implementations must allow
// that and must not throw.
class ZibStorage {
 public:
  ZibStorage() = default;
  ZibStorage(const ZibStorage&) = delete;
  ZibStorage& operator=(const ZibStorage&) = delete;
  virtual ~ZibStorage() = default;

  // The user's answer to the request for permission.
  virtual void savePushPermission(bool granted) = 0;
  // The FCM registration token, whole. Always before Zib::registerPushToken for the same token.
  virtual void saveFCMToken(std::string_view token) = 0;

  // The installed storage; one that keeps nothing until then.
  static ZibStorage& shared() noexcept;
  // For the core library, once, when it starts. False when a storage is installed already.
  static bool install(std::unique_ptr<ZibStorage> storage) noexcept;
};
