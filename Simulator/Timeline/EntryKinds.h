// The kinds of entries that a timeline has, and the fields of each.

#pragma once

#include <string_view>
#include <vector>

namespace sim {

struct EntryKind {
  std::string_view name;
  // Beside those that all entries have.
  std::vector<std::string_view> fields;
};

const std::vector<EntryKind>& entryKinds();

// That entries of every kind have.
const std::vector<std::string_view>& commonEntryFields();

// Whose values are texts, or null, in the entries of every kind that has them, beside "kind".
const std::vector<std::string_view>& textEntryFields();

// Those of the kind and the common ones; for no kind, those of all.
std::vector<std::string_view> entryFieldsOf(std::string_view kind);

}  // namespace sim
