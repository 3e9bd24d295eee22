// The core library of a benchmark: takes what both sides hand over, as cheaply as that can be done
// without the compiler dropping the work, or records it so that the sides can be compared.

#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "ZibPlatform/Foundation/Value.h"

namespace bench {

// A notification's event as hand-written code would keep it: constants as they are, other texts
// owned, no value for the null marker.
struct FlatField {
  std::string_view key;
  std::variant<std::monostate, std::string_view, std::string> value;
};
using FlatEvent = std::array<FlatField, 14>;

// Installs the core, logger and storage. Once in a process.
void installSink();

// The floor's way to the core's event tracking, since its events are flat.
void trackFlatEvent(std::string_view schema, const FlatEvent& event);

void consume(const zib::ValueMap& event);
void consume(const FlatEvent& event);
void consume(std::string_view text);
// Nobody asks; that somebody could is what keeps the work from being dropped.
std::uint64_t consumed();

// From now on everything is recorded, one text for each call of the core, until it is taken.
void startRecording();
std::vector<std::string> takeRecord();

// From now on each log line costs one allocation more, as a careless change on the path of every
// callback would.
void plantAllocation();

}  // namespace bench
