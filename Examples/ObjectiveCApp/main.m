// Starts the app on the simulated device, with UIApplicationMain()'s part played by hand.

#import "AppDelegate.h"
#include "Device/Device.h"
#import "Integration.h"

int main(void) {
  @autoreleasepool {
    launchDevice();
    UIApplication *application = [UIApplication sharedApplication];
    AppDelegate *appDelegate = [[AppDelegate alloc] init];
    application.delegate = appDelegate;
    [appDelegate application:application didFinishLaunchingWithOptions:nil];

    // In your app this is the last line of application:didFinishLaunchingWithOptions:, when the
    // delegates are in place. Take it out, and the app runs as if there were no module.
    startMessaging(application);

    liveThroughADay();
  }
  return 0;
}
