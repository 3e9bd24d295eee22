#include "Platform/Process.h"

#include "Platform/Class.h"
#include "Platform/Send.h"
#include "Platform/Strings.h"

namespace zib {

std::string mainBundlePath() {
  const objc::id bundle =
      send<objc::id>(classNamed<"NSBundle">().object(), selector<"mainBundle">());
  return utf8From(send<objc::id>(bundle, selector<"bundlePath">()));
}

bool isAppExtension() { return mainBundlePath().ends_with(".appex"); }

bool isSystemAtLeast(long major, long minor) {
  const objc::id process =
      send<objc::id>(classNamed<"NSProcessInfo">().object(), selector<"processInfo">());
  return send<objc::BOOL>(process, selector<"isOperatingSystemAtLeastVersion:">(),
                          OperatingSystemVersion{major, minor, 0}) != 0;
}

}  // namespace zib
