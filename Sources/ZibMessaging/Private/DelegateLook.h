// Where the host's delegates are found: a table, one look for each kind, with what is said and done
// when one is there, or not yet. Main thread.

#pragma once

#include <array>
#include <span>
#include <string_view>
#include <vector>

#include "ZibMessaging/Private/Installation.h"
#include "ZibMessaging/Private/Interception.h"
#include "ZibMessaging/Private/LogLine.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Object.h"

namespace zib {

// What one look has found.
struct Sighting {
  std::vector<Object> delegates = {};
  // What to say about a delegate that is not there, if anything.
  std::string_view absence = {};
  // Whether it may come soon.
  bool mayComeLater = false;
};

// In the order of the pass.
enum class DelegateKind : std::size_t { application, scene, notifications, firebase };

// One kind of delegate.
struct DelegateLook {
  const char* operation;
  Sighting (*find)();
  std::span<const Row> rows;
  // What stands before the name of the delegate's class, at the first look and at a later one.
  LinePart found;
  LinePart foundLater;
  // How long after a first look that found nothing the second comes, in seconds.
  double secondLookAfter;
  // What the second look does with each method.
  Installed (*installLater)(Row row, objc::id delegate, Class visible);
  // What is done when methods were added to a delegate, or nothing.
  void (*methodsAdded)();
};

extern const std::array<DelegateLook, 4> delegateLooks;

inline const DelegateLook& lookFor(DelegateKind kind) {
  return delegateLooks[static_cast<std::size_t>(kind)];
}

// The class that a delegate is taken for: the runtime's where the delegate raises as it is asked,
// which is one error line.
struct ClassOfDelegate {
  Class visible;
  bool raises;
};
ClassOfDelegate classOfDelegate(objc::id delegate);

// The first look, and a later one, which never says what it does not find.
Sighting lookForDelegates(const DelegateLook& look);
void lookAgainForDelegates(const DelegateLook& look);
// A look at any time: installs on what is not intercepted yet, and is silent about the rest.
void lookForNewDelegates(const DelegateLook& look);
void interceptNewDelegate(const DelegateLook& look, objc::id delegate);

}  // namespace zib
