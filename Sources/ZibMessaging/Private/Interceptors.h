// The functions that are installed on the host's delegates.

#pragma once

#include "ZibMessaging/Private/Installation.h"
#include "ZibMessaging/Private/Interception.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Native.h"

namespace zib {

// The runtime class "ZibSwizzleManager", whose methods are the first function of each row. None
// when somebody else has a class of that name.
Class interceptorClass();
// The row's method of that class. Ends the process when it is missing: the two are made together.
Method interceptorMethod(Row row);
// The row's function of that number; 0 is that method's.
objc::IMP interceptorFunction(Row row, std::size_t number);
// Whether it is any function of the row's.
bool isInterceptor(Row row, objc::IMP function);
// What the function, as a method of that class, was installed for; null for any other function.
const Installation* installationOf(Row row, objc::IMP function, Class owner);

}  // namespace zib
