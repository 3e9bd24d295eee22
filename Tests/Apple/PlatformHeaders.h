// The platform's own declarations of the object runtime, dispatch and blocks. The check puts this
// before every file of the module, so that a declaration of ours that disagrees is an error, and so
// is the use of a function that the oldest supported system lacks: our own declarations do not say
// since when there is one.
//
// Not for the module: it is built without any header of the platform.

#pragma once

// Two names of types that the module uses for its wrappers.
#define Class PlatformClass
#define Method PlatformMethod
#include <Block.h>
#include <dispatch/dispatch.h>
#include <objc/message.h>
#include <objc/objc.h>
#include <objc/runtime.h>
#undef Class
#undef Method
