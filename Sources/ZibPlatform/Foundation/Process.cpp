#include "ZibPlatform/Foundation/Process.h"

#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace zib {
namespace {

objc::id bundlePath() {
  const objc::id bundle =
      send<objc::id>(classNamed<"NSBundle">().object(), selector<"mainBundle">());
  return send<objc::id>(bundle, selector<"bundlePath">());
}

}  // namespace

bool isTestProcessWithoutApp() {
  if (!Class::named("XCTestCase")) return false;
  const objc::id bundle =
      send<objc::id>(classNamed<"NSBundle">().object(), selector<"mainBundle">());
  return send<objc::id>(bundle, selector<"bundleIdentifier">()) == nullptr;
}

std::string mainBundlePath() { return utf8From(bundlePath()); }

bool isAppExtension() { return StringRef::of(bundlePath()).endsWith(".appex"); }

bool isSystemAtLeast(long major, long minor) {
  const objc::id process =
      send<objc::id>(classNamed<"NSProcessInfo">().object(), selector<"processInfo">());
  return send<objc::BOOL>(process, selector<"isOperatingSystemAtLeastVersion:">(),
                          OperatingSystemVersion{major, minor, 0}) != 0;
}

}  // namespace zib
