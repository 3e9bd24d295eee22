// Starts the app on the simulated device, with UIApplicationMain()'s part played by hand.

#import "AppDelegate.h"
#include "Device/Device.h"

int main(void) {
  @autoreleasepool {
    launchDevice();
    UIApplication *application = [UIApplication sharedApplication];
    AppDelegate *appDelegate = [[AppDelegate alloc] init];
    application.delegate = appDelegate;
    [appDelegate application:application didFinishLaunchingWithOptions:nil];
    liveThroughADay();
  }
  return 0;
}
