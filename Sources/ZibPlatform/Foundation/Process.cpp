#include "ZibPlatform/Foundation/Process.h"

#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/Foundation/Structures.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace zib {
namespace {

objc::id mainBundle() { return sendToClass<"NSBundle", "mainBundle">(); }

objc::id bundlePath() { return send<objc::id>(mainBundle(), selector<"bundlePath">()); }

}  // namespace

bool isTestProcessWithoutApp() {
  if (!Class::named("XCTestCase")) return false;
  return send<objc::id>(mainBundle(), selector<"bundleIdentifier">()) == nullptr;
}

std::string mainBundlePath() { return utf8From(bundlePath()); }

bool isAppExtension() { return StringRef::of(bundlePath()).endsWith(".appex"); }

bool isSystemAtLeast(long major, long minor) {
  return send<objc::BOOL>(sendToClass<"NSProcessInfo", "processInfo">(),
                          selector<"isOperatingSystemAtLeastVersion:">(),
                          OperatingSystemVersion{major, minor, 0}) != 0;
}

}  // namespace zib
