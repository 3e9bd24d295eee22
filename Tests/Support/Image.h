// The file that code is in: a program, or a library that it has loaded.

#pragma once

#include <dlfcn.h>

#include <filesystem>
#include <string>

#include "ZibC/zib.h"

namespace test {

// Of the module: the program's own, or that of a slice in its place.
inline std::string imageOfModule() {
  Dl_info info{};
  ::dladdr(reinterpret_cast<const void*>(&zib_messaging_configure), &info);
  return std::filesystem::path(info.dli_fname).filename();
}

}  // namespace test
