#include "Platform/JSON.h"

#include "Platform/Class.h"
#include "Platform/Data.h"
#include "Platform/ErrorPointer.h"
#include "Platform/Send.h"

namespace zib {

Result<Object> parseJSON(std::span<const std::uint8_t> bytes) {
  constexpr objc::UInteger noOptions = 0;
  const Object data = makeData(bytes);
  return objectOrError([&](objc::id* error) {
    return send<objc::id>(classNamed<"NSJSONSerialization">().object(),
                          selector<"JSONObjectWithData:options:error:">(), data.raw(), noOptions,
                          error);
  });
}

}  // namespace zib
