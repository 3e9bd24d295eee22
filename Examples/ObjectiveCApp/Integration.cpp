// The whole integration: the app's callbacks reach the module from here on, and the app's delegates
// stay as they are. In C++, since the module's headers are C++ and declare the object runtime
// themselves: do not include them in Objective-C++ files.

#include "PrintingCore/PrintingCore.h"
#include "ZibMessaging/ZibMessaging.h"

extern "C" void startMessaging(zib::objc::id application) {
  // The core library comes first. Yours starts itself in its own way.
  installPrintingCore({.autoSwizzlingEnabled = true});

  ZibMessaging::shared().configure(zib::Application::retained(application));

  // Asks the user for permission, now or whenever your app would rather ask.
  ZibMessaging::shared().registerForPush(zib::Application::retained(application));
}
