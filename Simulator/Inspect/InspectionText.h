// An inspection as people read it on a terminal.

#pragma once

#include <string>

#include "Simulator/Inspect/Inspection.h"

namespace sim {

// What became of the notification when this is reported: "Tapped", "Shown in the foreground", or
// the event type in quotes.
std::string occasionOf(const std::string& eventType);

// "Tapped, it opens", and so on: what comes before the URL, if there is one.
std::string headlineOf(const InspectedLink& link);

// "312 bytes of 4,096".
std::string describeSize(std::size_t size);

// "opens", "not there" and so on: a verdict in words.
std::string describeVerdict(const std::string& verdict);

std::string textFrom(const Inspection& inspection);

}  // namespace sim
