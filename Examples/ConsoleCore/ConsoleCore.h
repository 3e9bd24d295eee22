// A core library in Objective-C for the examples: it prints what the module hands to it. A real one
// sends events to a server and keeps tokens; this one shows all that it has to implement.

#import "ZibObjectiveC.h"

@interface ConsoleCore : NSObject <ZIBCore> {
  ZIBConfig *_config;
}
- (instancetype)initWithAutoSwizzlingEnabled:(BOOL)enabled;
@end
