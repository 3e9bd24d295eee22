// The host app as the platform shows it: its delegates and what they implement, its scenes, and
// Firebase. Main thread, as all of UIKit.

#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "ZibPlatform/Foundation/Value.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Native.h"

namespace zib::recorder {

struct SceneView {
  objc::id scene = nullptr;  // compared only
  bool hasWindow = true;
  objc::id delegate = nullptr;
};

struct FirebaseView {
  bool isThere = false;
  bool hasClassMethod = false;
  bool hasInstance = false;
  bool hasDelegateProperty = false;
  bool isSettable = false;
  objc::id delegate = nullptr;

  friend bool operator==(const FirebaseView&, const FirebaseView&) = default;
};

// The module's own object counts as no delegate: a scenario's module sets itself.
struct HostView {
  bool hasApplicationClass = false;
  bool hasApplication = false;
  bool opensURLs = false;
  objc::id appDelegate = nullptr;
  objc::id notificationDelegate = nullptr;
  std::vector<SceneView> scenes;
  FirebaseView firebase;

  static HostView now();
};

// Any thread.
FirebaseView firebaseNow();

// The host's classes as they are when they are first seen, which is before the module changes them.
class HostClasses {
 public:
  // As a scenario describes a delegate; the null marker for nil.
  Value describe(objc::id delegate);

 private:
  const ValueMap& describe(Class cls);

  std::map<std::string, ValueMap, std::less<>> descriptions_;
};

}  // namespace zib::recorder
