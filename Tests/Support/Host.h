// Hosts: delegate objects whose methods record that they ran.

#pragma once

#include <set>
#include <string>

#include "Simulator/FirebaseMessaging/FirebaseMessaging.h"
#include "Simulator/Host/HostClasses.h"
#include "Simulator/UIKit/UIKit.h"
#include "Simulator/UserNotifications/UserNotifications.h"
#include "ZibPlatform/ObjectiveC/Object.h"

namespace test {

// All methods of delegates that the module intercepts.
inline const std::set<sim::HostMethod> everyHostMethod{
    sim::HostMethod::didRegister, sim::HostMethod::didFail,
    sim::HostMethod::openURL,     sim::HostMethod::openURLContexts,
    sim::HostMethod::willPresent, sim::HostMethod::didReceive,
    sim::HostMethod::token};

// The object is the delegate of everything: application, first scene, notification centre,
// Firebase.
inline void useForEverything(const zib::Object& delegate) {
  sim::uikit::setAppDelegate(delegate);
  sim::uikit::connectScene(true, delegate);
  sim::usernotifications::setDelegate(delegate);
  sim::firebase::set({});
  sim::firebase::setDelegate(delegate);
}

// An object of a host class that has those methods.
inline zib::Object makeHost(const std::string& name, const std::set<sim::HostMethod>& implements,
                            const std::string& superclass = {}) {
  sim::HostClassDescription description;
  description.name = name;
  description.superclass = superclass;
  description.implements = implements;
  description.options = 4;
  description.openURLReturns = false;
  sim::registerHostClasses({{name, description}});
  return sim::makeHostObject(name);
}

}  // namespace test
