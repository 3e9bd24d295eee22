// A stand-in for Firebase Messaging, any piece of which can be missing.

#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ZibPlatform/ObjectiveC/Object.h"

namespace sim::firebase {

// Which pieces there are. A piece that is missing is one that the class, or its instance, does not
// respond to.
struct Pieces {
  bool classMethod = true;
  bool instance = true;
  bool delegateProperty = true;
  bool settable = true;
};

// Of the class that set() registers.
std::vector<std::string_view> classNames();

// Firebase appears, or changes. Before the first call there is no class "FIRMessaging".
void set(const Pieces& pieces);

// What the host does, without a trace in the timeline. What it sets it keeps alive; Firebase itself
// holds its delegate weakly.
void setDelegate(zib::Object delegate);
zib::objc::id delegate();

// The messaging object, even while the class does not hand it out; nil before Firebase appeared.
zib::objc::id messaging();

// Firebase calls its delegate. False where there is none that responds.
bool deliverToken(const std::optional<std::string>& token);

}  // namespace sim::firebase
