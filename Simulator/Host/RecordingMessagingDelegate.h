// The host's messaging delegate: it records what the module tells it.

#pragma once

#include <memory>

namespace sim {

// The module has it until another takes its place, and it records for as long as the host keeps
// what this gives.
std::shared_ptr<const void> setRecordingMessagingDelegate();

}  // namespace sim
