#include "Simulator/Foundation/Foundation.h"

#include <mutex>

#include "Simulator/Foundation/Installers.h"
#include "Simulator/ObjectiveC/Runtime.h"
#include "ZibPlatform/ObjectiveC/AutoreleasePool.h"

namespace sim::foundation {

void prepare() {
  static std::once_flag installed;
  std::call_once(installed, [] {
    objc_thread_add();
    installThrownExceptions();
    const zib::AutoreleasePool pool;
    installClock();
    installDateFormatter();
    installDirectories();
    installErrors();
    installFileData();
    installJSONSerialization();
    installMethodSignatures();
    installBundleAndProcessInfo();
    installPropertyListSerialization();
    installStrings();
    installURLs();
  });
}

void install() {
  prepare();
  static std::once_flag installed;
  std::call_once(installed, [] {
    const zib::AutoreleasePool pool;
    installURLsOfVersion();
  });
}

}  // namespace sim::foundation
