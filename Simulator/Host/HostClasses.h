// The host app's delegate classes, made from a description. Each method only records that it ran,
// and does what the description says: answers, or calls the completion.

#pragma once

#include <map>
#include <set>
#include <string>

#include "Simulator/Json/Names.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Object.h"

namespace sim {

enum class HostMethod {
  didRegister,
  didFail,
  openURL,
  openURLContexts,
  willPresent,
  didReceive,
  token,
};

template <>
struct Names<HostMethod> {
  using enum HostMethod;
  static constexpr Named<HostMethod> rows[] = {{didRegister, "didRegister"},
                                               {didFail, "didFail"},
                                               {openURL, "openURL"},
                                               {openURLContexts, "openURLContexts"},
                                               {willPresent, "willPresent"},
                                               {didReceive, "didReceive"},
                                               {token, "token"}};
};

struct HostClassDescription {
  std::string name;
  // The name of another described class, or empty for NSObject.
  std::string superclass;
  std::set<HostMethod> implements;
  bool openURLReturns = true;
  zib::objc::UInteger options = 0;
  bool completes = true;
  friend bool operator==(const HostClassDescription&, const HostClassDescription&) = default;
};

using HostClassDescriptions = std::map<std::string, HostClassDescription>;

// How many classes a host can have.
inline constexpr std::size_t maximumHostClasses = 64;

// Registers all of them, superclasses first. Once in a process; at most maximumHostClasses, each
// superclass among them, no circle.
void registerHostClasses(const HostClassDescriptions& descriptions);

zib::Object makeHostObject(const std::string& className);

}  // namespace sim
