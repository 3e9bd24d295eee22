// The structures of Foundation's that methods take and give by value.

#pragma once

#include "ZibPlatform/ObjectiveC/Native.h"
#include "ZibPlatform/ObjectiveC/TypeEncoding.h"

namespace zib {

// NSRange
struct Range {
  objc::UInteger location = 0;
  objc::UInteger length = 0;
};
template <>
struct encoding::Of<Range> : Text<"{_NSRange=QQ}"> {};

// NSOperatingSystemVersion
struct OperatingSystemVersion {
  objc::Integer major = 0;
  objc::Integer minor = 0;
  objc::Integer patch = 0;
};
template <>
struct encoding::Of<OperatingSystemVersion> : Text<"{?=qqq}"> {};

}  // namespace zib
