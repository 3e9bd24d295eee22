// The platform's own declarations of the object runtime, dispatch and blocks. The check compares
// Native.h with them, and puts this before every file of the module, so that a function declared by
// hand elsewhere is an error where it disagrees or where the oldest supported system lacks it.
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
