// NSJSONSerialization's reader.

#include "Simulator/Foundation/Installers.h"
#include "Simulator/Foundation/JSONReader.h"
#include "Simulator/Foundation/Serialization.h"
#include "Simulator/ObjectiveC/Runtime.h"
#include "ZibPlatform/Foundation/Data.h"
#include "ZibPlatform/Foundation/ValueConversion.h"

namespace sim {
namespace {

using zib::objc::id;
using zib::objc::SEL;
using zib::objc::UInteger;

constexpr UInteger allowsFragments = 1U << 2U;

id jsonObject(id, SEL, id data, UInteger options, id* error) {
  return madeOrReported(CocoaError::propertyListReadCorrupt, "The data is not JSON", error, [&] {
    return zib::objectFrom(readJSON(zib::bytesOf(data), (options & allowsFragments) != 0));
  });
}

}  // namespace

void foundation::installJSONSerialization() {
  installClassMethod(zib::Class::named("NSJSONSerialization"),
                     "JSONObjectWithData:options:error:", &jsonObject);
}

}  // namespace sim
