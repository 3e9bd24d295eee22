// The kinds of entries that a timeline has, the fields of each, and what an expectation can compare
// each field with.

#pragma once

#include <string_view>
#include <vector>

#include "Simulator/Scenario/Kind.h"

namespace sim {

struct EntryField {
  std::string_view name;
  // Reading only checks.
  Kind<Json> pattern;
};

struct EntryKind {
  std::string_view name;
  // With those that entries of every kind have, but for "kind".
  std::vector<EntryField> fields;
};

const std::vector<EntryKind>& entryKinds();

// JSON Schema of what one entry is compared with.
Json entryPatternSchema();

}  // namespace sim
