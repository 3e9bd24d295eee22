// What NSBundle and NSProcessInfo say about the process: where its bundle lies, and which version
// of the system runs it.

#include <utility>

#include "Simulator/Foundation/Autoreleased.h"
#include "Simulator/Foundation/Foundation.h"
#include "Simulator/Foundation/Installers.h"
#include "Simulator/Foundation/Setting.h"
#include "Simulator/ObjectiveC/Runtime.h"
#include "ZibPlatform/Foundation/Strings.h"
#include "ZibPlatform/Foundation/Structures.h"
#include "ZibPlatform/ObjectiveC/Class.h"
#include "ZibPlatform/ObjectiveC/Send.h"

namespace sim {
namespace {

using zib::OperatingSystemVersion;
using zib::objc::BOOL;
using zib::objc::id;
using zib::objc::IMP;
using zib::objc::SEL;

Setting<std::string>& bundlePathSetting() {
  static Setting<std::string> path("/Applications/HostApp.app");
  return path;
}

Setting<std::optional<std::string>>& bundleIdentifierSetting() {
  static Setting<std::optional<std::string>> identifier("com.example.HostApp");
  return identifier;
}

Setting<OperatingSystemVersion>& versionSetting() {
  static Setting<OperatingSystemVersion> version({17, 0, 0});
  return version;
}

// The library's own resources, which a device has not: the names of languages, which its bundles
// read when they are first used, and its messages in the language of the machine.
id noBundleOfLibrary(id, SEL, id, id) { return nullptr; }

// There is one main bundle, and it lives as long as the process. None while it is made, when it
// asks for its own identifier.
id mainBundle = nullptr;

IMP originalBundlePath = nullptr;

id bundlePath(id bundle, SEL command) {
  if (bundle != mainBundle) {
    return zib::callImplementation<id>(originalBundlePath, bundle, zib::Selector(command));
  }
  return autoreleased(zib::makeString(bundlePathSetting().get()));
}

IMP originalBundleIdentifier = nullptr;

id bundleIdentifier(id bundle, SEL command) {
  if (mainBundle != nullptr && bundle != mainBundle) {
    return zib::callImplementation<id>(originalBundleIdentifier, bundle, zib::Selector(command));
  }
  const auto identifier = bundleIdentifierSetting().get();
  return identifier ? autoreleased(zib::makeString(*identifier)) : nullptr;
}

OperatingSystemVersion operatingSystemVersion(id, SEL) { return versionSetting().get(); }

BOOL isOperatingSystemAtLeast(id, SEL, OperatingSystemVersion wanted) {
  const auto ordered = [](const OperatingSystemVersion& version) {
    return std::tuple(version.major, version.minor, version.patch);
  };
  return static_cast<BOOL>(ordered(versionSetting().get()) >= ordered(wanted));
}

}  // namespace

void foundation::setMainBundlePath(std::string path) { bundlePathSetting().set(std::move(path)); }

void foundation::setMainBundleIdentifier(std::optional<std::string> identifier) {
  bundleIdentifierSetting().set(std::move(identifier));
}

void foundation::setSystemVersion(long major, long minor) {
  versionSetting().set({major, minor, 0});
}

OperatingSystemVersion foundation::systemVersion() { return versionSetting().get(); }

void foundation::installBundleAndProcessInfo() {
  // Before anything else is asked of the class.
  installClassMethod(zib::Class::named("NSBundle"),
                     "bundleForLibrary:version:", &noBundleOfLibrary);
  originalBundleIdentifier =
      installMethod(zib::Class::named("NSBundle"), "bundleIdentifier", &bundleIdentifier);
  mainBundle = zib::sendToClass<"NSBundle", "mainBundle">();
  originalBundlePath = installMethod(zib::Class::named("NSBundle"), "bundlePath", &bundlePath);
  const zib::Class processInfo = zib::Class::named("NSProcessInfo");
  installMethod(processInfo, "operatingSystemVersion", &operatingSystemVersion);
  installMethod(processInfo, "isOperatingSystemAtLeastVersion:", &isOperatingSystemAtLeast);
}

}  // namespace sim
