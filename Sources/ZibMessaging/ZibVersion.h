// The module's version, for hosts in C, Objective-C and C++. The build and the changelog have it
// from here.

#pragma once

#define ZIB_VERSION_MAJOR 0
#define ZIB_VERSION_MINOR 1
#define ZIB_VERSION_PATCH 0

// As text: "0.1.0".
#define ZIB_VERSION_TEXT_OF(part) #part
#define ZIB_VERSION_JOINED(major, minor, patch) \
  ZIB_VERSION_TEXT_OF(major) "." ZIB_VERSION_TEXT_OF(minor) "." ZIB_VERSION_TEXT_OF(patch)
#define ZIB_VERSION ZIB_VERSION_JOINED(ZIB_VERSION_MAJOR, ZIB_VERSION_MINOR, ZIB_VERSION_PATCH)
