// Stand-ins for UserNotifications: the notification centre, the notifications that it delivers, and
// the user who is asked for permission.

#pragma once

#include <optional>
#include <string>

#include "ZibPlatform/Foundation/Error.h"
#include "ZibPlatform/Foundation/Value.h"
#include "ZibPlatform/ObjectiveC/Object.h"

namespace sim::usernotifications {

struct Answer {
  bool granted = true;
  std::optional<zib::Error> error;
};

// Registers the classes. The user answers each request with `answer`, at once, on the thread
// "system"; without one, requests wait for answerOldestRequest(). Once in a process.
void install(std::optional<Answer> answer);

// What the host does, without a trace in the timeline.
void setDelegate(zib::Object delegate);
zib::objc::id delegate();

// On the calling thread. False when no request is waiting.
bool answerOldestRequest(const Answer& answer);

zib::objc::id center();
zib::Object makeNotification(const zib::ValueMap& userInfo);
zib::Object makeResponse(const zib::ValueMap& userInfo, const std::string& action);

}  // namespace sim::usernotifications
