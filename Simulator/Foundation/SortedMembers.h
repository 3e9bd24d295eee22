// The members of a dictionary while it is being read. A ValueMap looks up a key by going through
// all of them, which a long document from somewhere would make slow.

#pragma once

#include <map>
#include <string>
#include <utility>

#include "ZibPlatform/Foundation/Value.h"

namespace sim {

using SortedMembers = std::map<std::string, zib::Value>;

// Leaves the members without their values.
inline zib::ValueMap mapFrom(SortedMembers&& members) {
  zib::ValueMap map;
  map.reserve(members.size());
  for (auto& [key, value] : members) map.append(key, std::move(value));
  return map;
}

}  // namespace sim
