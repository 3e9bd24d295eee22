// Signatures of methods that take blocks. GNUstep's reader of type encodings ends the process at
// the
// '?' of a block's "@?", so a delegate could not take its completions as invocations; a block is
// passed as an object is.

#include <string>
#include <string_view>

#include "Simulator/Foundation/Installers.h"
#include "Simulator/ObjectiveC/Runtime.h"
#include "ZibPlatform/ObjectiveC/Class.h"

namespace sim {
namespace {

zib::objc::IMP signatureFromTypes = nullptr;

zib::objc::id signatureWithObjCTypes(zib::objc::id cls, zib::objc::SEL command, const char* types) {
  std::string readable(types);
  constexpr std::string_view block = "@?";
  for (std::size_t at = 0; (at = readable.find(block, at)) != std::string::npos; ++at) {
    readable.erase(at + 1, 1);
  }
  return zib::callImplementation<zib::objc::id>(signatureFromTypes, cls, zib::Selector(command),
                                                readable.c_str());
}

}  // namespace

void foundation::installMethodSignatures() {
  signatureFromTypes = installClassMethod(zib::classNamed<"NSMethodSignature">(),
                                          "signatureWithObjCTypes:", &signatureWithObjCTypes);
}

}  // namespace sim
