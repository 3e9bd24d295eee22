#include "Simulator/Foundation/Foundation.h"

#include <mutex>

#include "Simulator/Foundation/Installers.h"
#include "Simulator/ObjectiveC/Runtime.h"
#include "ZibPlatform/ObjectiveC/AutoreleasePool.h"

namespace sim {

void prepareFoundation() {
  static std::once_flag installed;
  std::call_once(installed, [] {
    objc_thread_add();
    keepThrownExceptions();
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

void installFoundation() {
  prepareFoundation();
  static std::once_flag installed;
  std::call_once(installed, [] {
    const zib::AutoreleasePool pool;
    installURLsOfVersion();
  });
}

}  // namespace sim
