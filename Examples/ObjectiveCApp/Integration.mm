#import "Integration.h"

#include "PrintingCore/PrintingCore.h"
#include "ZibMessaging/ZibMessaging.h"
#include "ZibPlatform/ObjectiveC/Bridge.h"

void startMessaging(UIApplication *application) {
  // The core library comes first. Yours starts itself in its own way.
  installPrintingCore({.autoSwizzlingEnabled = true});

  const auto zibApplication = zib::Application::retained(zib::native(application));
  ZibMessaging::shared().configure(zibApplication);

  // Asks the user for permission, now or whenever your app would rather ask.
  ZibMessaging::shared().registerForPush(zibApplication);
}
