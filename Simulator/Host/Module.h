// The module as the host app calls it.
//
// Through zib.h alone, as hosts of every language: whatever stands behind that is what a scenario
// tests.

#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include "Simulator/Json/Json.h"
#include "Simulator/Json/Names.h"
#include "ZibPlatform/Foundation/Error.h"
#include "ZibPlatform/Foundation/Value.h"

namespace sim {

// How the module finds delegates.
enum class DelegateDiscovery { onceWithRetry, continuous };

template <>
struct Names<DelegateDiscovery> {
  static constexpr Named<DelegateDiscovery> rows[] = {
      {DelegateDiscovery::onceWithRetry, "onceWithRetry"},
      {DelegateDiscovery::continuous, "continuous"}};
};

// Each call is for the application object as it is then, or for none.
class Module {
 public:
  // It hears of news until it is let go.
  void setDelegate();
  void letDelegateGo();
  // None takes the callback away; it answers what it is given.
  static void setURLDelegate(std::optional<bool> answer);
  static void setSwizzlingEnabled(bool isEnabled);

  static void configure();
  static void registerForPush();
  static void registerForPushSimple();
  // `configured` gets the configuration of Firebase as JSON.
  static void configurePush(const std::optional<std::string>& endpoint,
                            const std::function<void(const Json& config)>& configured,
                            const std::function<void(bool isRegistering)>& completion);

  static void setupAutoSwizzling();
  static void setupAsNotificationDelegate();
  static void ensureFirebaseMessagingDelegate();
  static void didRegisterForRemoteNotifications(std::span<const std::uint8_t> token);
  static void didFailToRegisterForRemoteNotifications(const std::optional<zib::Error>& error);
  static void setPushToken(std::span<const std::uint8_t> token);
  static void setFCMToken(const std::string& token);
  static void didReceiveRegistrationToken(const std::string& token);
  static zib::objc::UInteger willPresent(const zib::ValueMap& userInfo);
  static void didReceive(const zib::ValueMap& userInfo, const std::string& action);
  static void trackNotificationReceived(const zib::ValueMap& userInfo);
  static void trackNotificationOpened(const zib::ValueMap& userInfo);
  static bool handleNotificationURL(const zib::ValueMap& userInfo);
  static bool handleURL(const std::string& url, const std::string& source);
  static Json createNotificationPayload(const zib::ValueMap& userInfo,
                                        const std::string& eventType);
  static Json createEventPayload(const std::string& eventName,
                                 const std::optional<zib::ValueMap>& properties);

  static void setDelegateDiscovery(DelegateDiscovery discovery);

  // The fields of a `state` entry, and of a `report` entry.
  static Json state();
  static Json report();

 private:
  std::shared_ptr<const void> delegate_;
};

}  // namespace sim
