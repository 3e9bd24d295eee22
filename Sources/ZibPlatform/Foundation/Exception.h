// What the platform throws.

#pragma once

#include <memory>
#include <string>

namespace zib {

// The name and the reason of the platform's exception that the caller's catch block is handling, or
// the class of an object that is no NSException. None when it is an exception of C++.
std::unique_ptr<std::string> describeHandledPlatformException();

}  // namespace zib
