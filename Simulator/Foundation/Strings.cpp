// NSString from UTF-16 units. GNUstep takes a first unit of U+FEFF or U+FFFE for a byte order mark,
// drops it, and in the second case swaps the bytes of the rest; to Foundation they are characters.

#include "Simulator/Foundation/Installers.h"
#include "Simulator/ObjectiveC/Runtime.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace sim {
namespace {

using zib::selector;
using zib::send;
using zib::objc::id;
using zib::objc::SEL;
using zib::objc::UInteger;
using zib::objc::UniChar;

// The encoding that names its byte order knows no mark.
constexpr unsigned utf16LittleEndian = 0x94000100;

zib::objc::IMP originalInit = nullptr;

bool looksLikeMark(UniChar unit) { return unit == 0xFEFF || unit == 0xFFFE; }

id initWithCharacters(id string, SEL command, const UniChar* units, UInteger length) {
  if (length > 0 && looksLikeMark(units[0])) {
    return send<id>(string, selector<"initWithBytes:length:encoding:">(),
                    static_cast<const void*>(units), length * sizeof(UniChar), utf16LittleEndian);
  }
  return zib::callImplementation<id>(originalInit, string, zib::Selector(command), units, length);
}

}  // namespace

// NSString's own serves the private classes too that its `alloc` and NSMutableString's give.
void foundation::installStrings() {
  originalInit = installMethod(zib::classNamed<"NSString">(),
                               "initWithCharacters:length:", &initWithCharacters);
}

}  // namespace sim
