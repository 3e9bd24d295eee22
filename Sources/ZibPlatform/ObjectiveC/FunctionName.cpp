#include "ZibPlatform/ObjectiveC/FunctionName.h"

#include <dlfcn.h>

#include <string_view>

namespace zib {

FunctionName nameOfFunction(objc::IMP function) {
  Dl_info info{};
  void* const address = reinterpret_cast<void*>(function);
  if (dladdr(address, &info) == 0) return {};
  FunctionName name;
  if (info.dli_fname != nullptr) {
    const std::string_view path(info.dli_fname);
    const std::size_t slash = path.rfind('/');
    name.image = std::string(path.substr(slash == std::string_view::npos ? 0 : slash + 1));
  }
  // The nearest symbol before it can be another function's.
  if (info.dli_sname != nullptr && info.dli_saddr == address)
    name.symbol = std::string(info.dli_sname);
  return name;
}

}  // namespace zib
