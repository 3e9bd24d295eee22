#include "Simulator/Foundation/CocoaError.h"

#include <system_error>

#include "Simulator/Foundation/Autoreleased.h"
#include "ZibPlatform/Foundation/Error.h"
#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/Foundation/ValueConversion.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace sim {
namespace {

using zib::makeString;
using zib::Object;
using zib::selector;
using zib::send;
using zib::objc::id;

constexpr std::string_view cocoaDomain = "NSCocoaErrorDomain";

Object posixError(int number) {
  return zib::Error{"NSPOSIXErrorDomain", number, std::generic_category().message(number), {}}
      .nativeError();
}

}  // namespace

Object makeError(CocoaError code, std::string_view description) {
  return zib::Error{std::string(cocoaDomain), static_cast<long>(code), std::string(description), {}}
      .nativeError();
}

Object makeFileError(CocoaError code, std::string_view description, int errorNumber) {
  const Object userInfo = zib::objectFrom(zib::ValueMap{{"NSLocalizedDescription", description}});
  send<void>(userInfo.raw(), selector<"setObject:forKey:">(), posixError(errorNumber).raw(),
             makeString("NSUnderlyingError").raw());
  return zib::create<"NSError", "initWithDomain:code:userInfo:">(
      makeString(cocoaDomain).raw(), static_cast<long>(code), userInfo.raw());
}

void report(const Object& error, id* to) {
  if (to != nullptr) *to = autoreleased(error);
}

}  // namespace sim
