// Stand-ins for UserNotifications: the notification centre, the notifications that it delivers, and
// the user who is asked for permission.

#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Simulator/UserNotifications/DelegateMessages.h"
#include "ZibPlatform/Foundation/Error.h"
#include "ZibPlatform/Foundation/Value.h"
#include "ZibPlatform/ObjectiveC/Object.h"

namespace sim::usernotifications {

inline constexpr const char* defaultAction = "com.apple.UNNotificationDefaultActionIdentifier";

struct Answer {
  bool granted = true;
  std::optional<zib::Error> error;
};

// Of the classes that install() registers.
std::vector<std::string_view> classNames();

// Registers the classes. The user answers each request with `answer`, at once, on the thread
// "system"; without one, requests wait for answerOldestRequest(). Once in a process.
// Without a bundle identifier, asking for the notification centre ends the process.
void install(std::optional<Answer> answer, bool hasBundleIdentifier = true);

// What the host does, without a trace in the timeline. What it sets it keeps alive; the centre
// itself holds its delegate weakly.
void setDelegate(zib::Object delegate);
zib::objc::id delegate();

// On the calling thread. False when no request is waiting.
bool answerOldestRequest(const Answer& answer);

zib::objc::id center();
zib::Object makeNotification(const zib::ValueMap& userInfo);
zib::Object makeResponse(const zib::ValueMap& userInfo, const std::string& action);

// The system calls the delegate, if it responds, with a completion that is made for it then. False
// when it does not.
bool present(const zib::ValueMap& userInfo,
             const std::function<PresentationCompletion()>& completion);
bool respond(const zib::ValueMap& userInfo, const std::string& action,
             const std::function<ResponseCompletion()>& completion);

}  // namespace sim::usernotifications
