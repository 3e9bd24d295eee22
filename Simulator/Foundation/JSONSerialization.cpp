// NSJSONSerialization's reader.

#include "Platform/Data.h"
#include "Platform/ValueConversion.h"
#include "Simulator/Foundation/Autoreleased.h"
#include "Simulator/Foundation/CocoaError.h"
#include "Simulator/Foundation/FormatError.h"
#include "Simulator/Foundation/Installers.h"
#include "Simulator/Foundation/JSONReader.h"
#include "Simulator/Runtime.h"

namespace sim {
namespace {

using zib::objc::id;
using zib::objc::SEL;
using zib::objc::UInteger;

constexpr UInteger allowsFragments = 1U << 2U;

id jsonObject(id, SEL, id data, UInteger options, id* error) {
  try {
    const zib::Value value = readJSON(zib::bytesOf(data), (options & allowsFragments) != 0);
    return autoreleased(zib::objectFrom(value));
  } catch (const FormatError& failure) {
    report(makeError(CocoaError::propertyListReadCorrupt,
                     std::string("The data is not JSON: ") + failure.what()),
           error);
    return nullptr;
  }
}

}  // namespace

void installJSONSerialization() {
  installClassMethod(zib::Class::named("NSJSONSerialization"),
                     "JSONObjectWithData:options:error:", &jsonObject);
}

}  // namespace sim
