// Reading a scenario.

#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "Simulator/Scenario/Node.h"
#include "Simulator/Scenario/Scenario.h"

namespace sim {

// Throws ScenarioError. `defaultName` is used where the scenario has none. Files that the scenario
// names are looked for from `folder`.
Scenario readScenario(std::string_view text, const std::string& defaultName,
                      const std::filesystem::path& folder = {});

// Parts that steps have too; what they describe has been checked by readScenario, so that playing a
// step cannot fail.
zib::Error readError(const Node& node);
std::optional<ZibConfig> readConfig(const Node& node);
usernotifications::Answer readAnswer(const Node& node);
// Adds the class, and its superclasses, to the host's classes. `classes` may be null when they are
// known already.
DelegateDescription readDelegate(const Node& node, HostClassDescriptions* classes);
// The notification delegate can be the application delegate, too.
DelegateDescription readNotificationDelegate(const Node& node, HostClassDescriptions* classes);
SceneDescription readScene(const Node& node, HostClassDescriptions* classes);
FirebaseDescription readFirebase(const Node& node, HostClassDescriptions* classes);
// The same where the object has no other keys, and null stands for none.
std::optional<FirebaseDescription> readFirebaseOrNull(const Node& node,
                                                      HostClassDescriptions* classes);

}  // namespace sim
