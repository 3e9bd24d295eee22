// NSError objects as Foundation's own services make them.

#pragma once

#include <string_view>

#include "ZibPlatform/ObjectiveC/Native.h"
#include "ZibPlatform/ObjectiveC/Object.h"

namespace sim {

// Codes of NSCocoaErrorDomain, by Foundation's names.
enum class CocoaError : long {
  fileNoSuchFile = 4,
  fileReadUnknown = 256,
  fileReadNoPermission = 257,
  fileReadInvalidFileName = 258,
  fileReadNoSuchFile = 260,
  fileReadUnsupportedScheme = 262,
  fileWriteUnknown = 512,
  fileWriteNoPermission = 513,
  fileWriteInvalidFileName = 514,
  fileWriteFileExists = 516,
  fileWriteUnsupportedScheme = 518,
  fileWriteOutOfSpace = 640,
  fileWriteVolumeReadOnly = 642,
  propertyListReadCorrupt = 3840,  // also of JSON
  propertyListWriteInvalid = 3851,
};

zib::Object makeError(CocoaError code, std::string_view description);
// The same with the system's own finding beneath it.
zib::Object makeFileError(CocoaError code, std::string_view description, int errorNumber);

// Hands an error out through a method's last argument, which may be nil.
void report(const zib::Object& error, zib::objc::id* to);

}  // namespace sim
