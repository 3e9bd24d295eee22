#include "ZibPlatform/Foundation/JSON.h"

#include "ZibPlatform/Foundation/Data.h"
#include "ZibPlatform/Foundation/ErrorPointer.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace zib {

Result<Object> parseJSON(std::span<const std::uint8_t> bytes) {
  constexpr objc::UInteger noOptions = 0;
  const Object data = makeData(bytes);
  return objectOrError([&](objc::id* error) {
    return sendToClass<"NSJSONSerialization", "JSONObjectWithData:options:error:">(
        data.raw(), noOptions, error);
  });
}

}  // namespace zib
