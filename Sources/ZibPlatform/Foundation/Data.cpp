#include "ZibPlatform/Foundation/Data.h"

#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace zib {

Object makeData(std::span<const std::uint8_t> bytes) {
  return create<"NSData", "initWithBytes:length:">(static_cast<const void*>(bytes.data()),
                                                   objc::UInteger{bytes.size()});
}

std::span<const std::uint8_t> bytesOf(objc::id data) {
  if (!isKind<"NSData">(data)) return {};
  const auto* bytes = send<const void*>(data, selector<"bytes">());
  return {static_cast<const std::uint8_t*>(bytes),
          send<objc::UInteger>(data, selector<"length">())};
}

}  // namespace zib
