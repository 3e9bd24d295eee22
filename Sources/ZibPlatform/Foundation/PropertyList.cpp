#include "ZibPlatform/Foundation/PropertyList.h"

#include "ZibPlatform/Foundation/Data.h"
#include "ZibPlatform/Foundation/ErrorPointer.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace zib {
namespace {

constexpr objc::UInteger immutable = 0;  // NSPropertyListImmutable
constexpr objc::UInteger noOptions = 0;
constexpr objc::UInteger xmlFormat = 100;  // NSPropertyListXMLFormat_v1_0

}  // namespace

Result<Object> parsePropertyList(std::span<const std::uint8_t> bytes) {
  const Object data = makeData(bytes);
  objc::UInteger* const formatIsNotAskedFor = nullptr;
  return objectOrError([&](objc::id* error) {
    return sendToClass<"NSPropertyListSerialization", "propertyListWithData:options:format:error:">(
        data.raw(), immutable, formatIsNotAskedFor, error);
  });
}

Result<Object> xmlPropertyList(const Dictionary& dictionary) {
  return objectOrError([&](objc::id* error) {
    return sendToClass<"NSPropertyListSerialization", "dataWithPropertyList:format:options:error:">(
        dictionary.native(), xmlFormat, noOptions, error);
  });
}

}  // namespace zib
