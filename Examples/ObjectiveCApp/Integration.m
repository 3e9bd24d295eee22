#import "Integration.h"

#import "ConsoleCore/ConsoleCore.h"
#import "ZibObjectiveC.h"

void startMessaging(UIApplication *application) {
  // The core library comes first. Yours starts itself in its own way.
  [ZIBMessaging installCore:[[ConsoleCore alloc] initWithAutoSwizzlingEnabled:YES]];

  [ZIBMessaging.shared configureWithApplication:application];

  // Asks the user for permission, now or whenever your app would rather ask.
  [ZIBMessaging.shared registerForPushWithApplication:application];
}
