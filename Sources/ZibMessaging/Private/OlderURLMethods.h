// The methods by which an application delegate opened links before iOS 9. The system prefers the
// newer one, so a host that has an older one only would get no link any more once the newer one is
// added.

#pragma once

#include "ZibPlatform/ObjectiveC/Native.h"

namespace zib {

// Calls the first of them that the delegate has, whose answer is the answer; yes without any.
objc::BOOL openWithOlderMethod(objc::id delegate, objc::id application, objc::id url,
                               objc::id options);

}  // namespace zib
