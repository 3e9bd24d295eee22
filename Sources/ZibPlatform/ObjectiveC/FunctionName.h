// Where a function comes from, as far as the process can tell.

#pragma once

#include <optional>
#include <string>

#include "ZibPlatform/ObjectiveC/Native.h"

namespace zib {

struct FunctionName {
  // The file name of the program or library that it lies in, and the function's own name. Functions
  // that their file keeps to itself have no name.
  std::optional<std::string> image;
  std::optional<std::string> symbol;
};

FunctionName nameOfFunction(objc::IMP function);

}  // namespace zib
