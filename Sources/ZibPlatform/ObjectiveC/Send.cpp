#include "ZibPlatform/ObjectiveC/Send.h"

#include <cstdio>
#include <cstdlib>

#include "ZibPlatform/ObjectiveC/Class.h"

namespace zib {
namespace {

[[noreturn]] void stopForMismatch(objc::id receiver, Selector selector, const char* sent,
                                  const char* actual) {
  std::fprintf(stderr,
               "ZibMessaging: the message %s to an object of class %s was sent as \"%s\", but the "
               "method is \"%s\"\n",
               selector.name(), Class::ofObject(receiver).name(), sent, actual);
  std::abort();
}

// Foundations compiled without block support declare a block argument as a pointer to a structure.
// It is passed alike, so it counts as a block.
std::string withBlocksAsObjects(std::string types) {
  for (std::size_t at = types.find("@?"); at != std::string::npos; at = types.find("@?", at + 1)) {
    types.erase(at + 1, 1);
  }
  return types;
}

}  // namespace

void checkSend(objc::id receiver, Selector selector, const char* types) {
  const Method method = Class::ofObject(receiver).instanceMethod(selector);
  const char* actual = method ? method.typeEncoding() : nullptr;
  if (actual == nullptr) return;
  const std::string wanted = withBlocksAsObjects(encoding::normalised(types));
  if (wanted != withBlocksAsObjects(encoding::normalised(actual))) {
    stopForMismatch(receiver, selector, types, actual);
  }
}

}  // namespace zib
