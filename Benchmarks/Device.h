// The device of a benchmark: the platform's classes with plain instance variables, as on a phone.
// The simulator's stand-ins keep properties in dictionaries, whose cost would bury what is
// measured.

#pragma once

#include <string_view>

#include "ZibPlatform/Foundation/Value.h"
#include "ZibPlatform/ObjectiveC/Block.h"
#include "ZibPlatform/ObjectiveC/Object.h"

namespace bench {

// Foundation, the main queue, UIKit, UserNotifications and Firebase. Once in a process.
void setUpDevice();

// The same host three times: one for the module to intercept, one for the floor, one left alone.
// Each is application, scene, notification-centre and Firebase delegate in one, and implements
// every method.
struct Hosts {
  zib::Object intercepted;
  zib::Object floor;
  zib::Object bare;
};
const Hosts& hosts();
// The delegate that the application, the scene, the centre and Firebase have.
void setDelegate(const zib::Object& host);

zib::objc::id application();
zib::objc::id center();
zib::objc::id messaging();

zib::Object makeNotification(const zib::Object& userInfo);
zib::Object makeResponse(const zib::Object& notification, std::string_view action);

// Runs what the main queue holds.
void drainMainQueue();

// How often hosts' methods ran and completions were called.
unsigned long hostCalls();
unsigned long completions();
// The system's completions, as blocks that live as long as the process.
zib::BlockLayout* presentationCompletion();
zib::BlockLayout* responseCompletion();

}  // namespace bench
