// The module's public operations, as the step `call` names them: one type for each, with its
// arguments, and one table of how each is read and called.

#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "Simulator/Host/Module.h"
#include "Simulator/Json/Json.h"
#include "Simulator/Scenario/Playable.h"
#include "Simulator/UserNotifications/UserNotifications.h"
#include "ZibPlatform/Foundation/Data.h"
#include "ZibPlatform/Foundation/Error.h"
#include "ZibPlatform/Foundation/Value.h"

namespace sim {

namespace operations {

struct SetupAutoSwizzling {};
struct SetupAsNotificationDelegate {};
struct EnsureFirebaseMessagingDelegate {};
struct DidRegisterForRemoteNotifications {
  zib::Bytes token;
};
struct SetPushToken {
  zib::Bytes token;
};
struct DidFailToRegisterForRemoteNotifications {
  std::optional<zib::Error> error;
};
struct SetFCMToken {
  std::string token;
};
struct DidReceiveRegistrationToken {
  std::string token;
};
struct WillPresent {
  zib::ValueMap userInfo;
};
struct DidReceive {
  zib::ValueMap userInfo;
  std::string action = usernotifications::defaultAction;
};
struct TrackNotificationReceived {
  zib::ValueMap userInfo;
};
struct TrackNotificationOpened {
  zib::ValueMap userInfo;
};
struct HandleNotificationURL {
  zib::ValueMap userInfo;
};
struct HandleURL {
  std::string url;
  std::string source;
};
struct CreateNotificationPayload {
  zib::ValueMap userInfo;
  std::string eventType;
};
struct CreateEventPayload {
  std::string eventName;
  std::optional<zib::ValueMap> properties;
};
struct SetDelegateDiscovery {
  DelegateDiscovery discovery = DelegateDiscovery::onceWithRetry;
};

}  // namespace operations

using Operation =
    std::variant<operations::SetupAutoSwizzling, operations::SetupAsNotificationDelegate,
                 operations::EnsureFirebaseMessagingDelegate,
                 operations::DidRegisterForRemoteNotifications, operations::SetPushToken,
                 operations::DidFailToRegisterForRemoteNotifications, operations::SetFCMToken,
                 operations::DidReceiveRegistrationToken, operations::WillPresent,
                 operations::DidReceive, operations::TrackNotificationReceived,
                 operations::TrackNotificationOpened, operations::HandleNotificationURL,
                 operations::HandleURL, operations::CreateNotificationPayload,
                 operations::CreateEventPayload, operations::SetDelegateDiscovery>;

// Calling one gives what it returns, or none for one that returns nothing.
struct OperationRow : Playable<Operation, std::optional<Json>> {
  using Playable::Playable;
};

// In the order in which they are listed to people.
const std::vector<OperationRow>& operationRows();

}  // namespace sim
