// The app's Firebase property list as it is kept in the Documents directory.

#pragma once

#include <optional>
#include <string>

#include "ZibPlatform/Foundation/Dictionary.h"

namespace zib {

// Leaves a line, or an error line where it could not be written. Nothing where there is no such
// directory.
void saveFirebasePlist(const Dictionary& plist);
// None while there is no such file.
std::optional<std::string> savedFirebasePlist();

}  // namespace zib
