#include "ZibPlatform/Foundation/Data.h"

#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace zib {

Object makeData(std::span<const std::uint8_t> bytes) {
  const objc::id allocated = send<objc::id>(classNamed<"NSData">().object(), selector<"alloc">());
  return Object::adopted(send<objc::id>(allocated, selector<"initWithBytes:length:">(),
                                        static_cast<const void*>(bytes.data()),
                                        static_cast<objc::UInteger>(bytes.size())));
}

std::span<const std::uint8_t> bytesOf(objc::id data) {
  if (!isData(data)) return {};
  const auto* bytes = send<const void*>(data, selector<"bytes">());
  return {static_cast<const std::uint8_t*>(bytes),
          send<objc::UInteger>(data, selector<"length">())};
}

bool isData(objc::id object) { return isKind<"NSData">(object); }

}  // namespace zib
