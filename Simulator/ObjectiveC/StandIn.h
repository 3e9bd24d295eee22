// Classes of platform objects that only carry named properties, such as a notification's request.

#pragma once

#include <initializer_list>
#include <string_view>
#include <vector>

#include "ZibPlatform/Foundation/Value.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Native.h"
#include "ZibPlatform/ObjectiveC/Object.h"

namespace sim {

struct StandInProperties {
  std::initializer_list<const char*> objects;
  std::initializer_list<const char*> unsignedIntegers = {};
};

// Makes the class, with a getter for each property.
zib::Class registerStandIn(const char* name, zib::Class superclass,
                           const StandInProperties& properties);

// A new object of such a class.
zib::Object makeStandIn(zib::Class cls);
// Properties are kept strongly; nil takes one away. Integers are NSNumbers here.
void setProperty(zib::objc::id object, std::string_view name, const zib::Object& value);
void setProperty(zib::objc::id object, std::string_view name, const zib::Value& value);
zib::objc::id property(zib::objc::id object, std::string_view name);

// An NSSet that keeps the order of its elements, so that iterating it is the same in each run.
inline constexpr const char* orderedSetClass = "ZibSimOrderedSet";
zib::Object makeOrderedSet(const std::vector<zib::Object>& elements);

}  // namespace sim
