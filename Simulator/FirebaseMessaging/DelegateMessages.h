// The message that Firebase Messaging sends to its delegate.

#pragma once

#include "ZibPlatform/ObjectiveC/Native.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace sim::firebase {

inline constexpr zib::FixedString didReceiveToken = "messaging:didReceiveRegistrationToken:";

inline void sendToken(zib::objc::id delegate, zib::objc::id messaging, zib::objc::id token) {
  zib::send<void>(delegate, zib::selector<didReceiveToken>(), messaging, token);
}

}  // namespace sim::firebase
