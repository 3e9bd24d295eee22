// The host app's delegate classes, made from a description. Each method records that it ran, and
// does what the description says: answers, calls the completion, raises, or goes on to its
// superclass.

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
  openURLFromSource,
  handleOpenURL,
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
                                               {token, "token"},
                                               {openURLFromSource, "openURLFromSource"},
                                               {handleOpenURL, "handleOpenURL"}};
};

// Whether and when a method calls the completion that it gets: at once, twice, in a later turn of
// the main queue, or on another thread.
enum class Completes { never, once, twice, later, elsewhere };

template <>
struct Names<Completes> {
  static constexpr Named<Completes> rows[] = {{Completes::twice, "twice"},
                                              {Completes::later, "later"},
                                              {Completes::elsewhere, "elsewhere"}};
};

// How a method calls its superclass's: with its own arguments, with others (of URL contexts all but
// the first, or the same anew; else equal ones), or with its own in a later turn of the main queue.
enum class SuperCall { same, filtered, later };

template <>
struct Names<SuperCall> {
  static constexpr Named<SuperCall> rows[] = {
      {SuperCall::same, "same"}, {SuperCall::filtered, "filtered"}, {SuperCall::later, "later"}};
};

// How an object answers for another one: by naming it, by passing the message on, or by passing it
// on as an object that is no NSObject.
enum class Forwarding { target, invocation, proxy };

template <>
struct Names<Forwarding> {
  static constexpr Named<Forwarding> rows[] = {{Forwarding::target, "target"},
                                               {Forwarding::invocation, "invocation"},
                                               {Forwarding::proxy, "proxy"}};
};

struct RaisedException {
  std::string name;
  std::string reason;
  friend bool operator==(const RaisedException&, const RaisedException&) = default;
};

struct HostClassDescription {
  std::string name;
  // The name of another described class, or empty for NSObject.
  std::string superclass;
  std::set<HostMethod> implements;
  bool openURLReturns = true;
  zib::objc::UInteger options = 0;
  Completes completes = Completes::once;
  std::map<HostMethod, RaisedException> throws;
  std::map<HostMethod, SuperCall> callsSuper;
  // The name of another described class, or empty. Each object has one of its own to forward to.
  std::string forwardsTo;
  Forwarding forwarding = Forwarding::target;
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
