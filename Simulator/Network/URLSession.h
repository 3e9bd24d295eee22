// The platform's URL session, NSURLSession, over the servers of a scenario.
//
// An exchange takes no virtual time: it ends, on the thread "session", after all main-queue work
// that is due by then, and several end in the order in which they were started. One whose server
// hangs ends when its own time-out is over.

#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "Simulator/Network/Network.h"

namespace sim::urlsession {

// Of the classes that install() registers.
std::vector<std::string_view> classNames();

// Registers the classes. Once in a process, before other threads send messages.
void install();

// Without a network, which is the state at start and once the owner has let it go, each exchange
// fails as it does offline.
void setNetwork(const std::shared_ptr<Network>& network);

}  // namespace sim::urlsession
