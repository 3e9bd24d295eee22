// The user's Documents directory and the files in it. Any thread.

#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "ZibPlatform/Foundation/Error.h"
#include "ZibPlatform/Foundation/URL.h"
#include "ZibPlatform/ObjectiveC/Object.h"

namespace zib {

// A file of that name directly in the first Documents directory of the user, whether or not the
// file exists. None when there is no such directory.
std::optional<URL> fileInDocuments(std::string_view name);
// The file-system path of a file URL.
std::string pathOf(const URL& file);
bool fileExists(std::string_view path);
// Writes an NSData in place of what the file holds, directly: whoever reads meanwhile may see a
// part. The error if that fails.
std::optional<Error> writeFile(const URL& file, const Object& data);

}  // namespace zib
