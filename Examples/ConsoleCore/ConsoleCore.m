#import "ConsoleCore.h"

#include <stdio.h>

// The module calls from any thread: one call of the C library for a whole line keeps it whole.
static void print(NSString *line) { puts(line.UTF8String); }

@implementation ConsoleCore

- (instancetype)initWithAutoSwizzlingEnabled:(BOOL)enabled {
  self = [super init];
  if (self != nil) _config = [[ZIBConfig alloc] initWithAutoSwizzlingEnabled:enabled];
  return self;
}

- (ZIBConfig *)config {
  return _config;
}

- (NSString *)pushConfigEndpoint {
  return nil;
}

- (void)log:(NSString *)message {
  print([NSString stringWithFormat:@"zib    | %@", message]);
}

- (void)logFailure:(NSString *)message error:(NSError *)error {
  NSString *reason = @"";
  if (error != nil) {
    reason = [NSString stringWithFormat:@" (%@ %ld)", error.domain, (long)error.code];
  }
  print([NSString stringWithFormat:@"zib    | %@%@", message, reason]);
}

// Values of any kind can come; this app is content with the texts.
- (void)trackSelfDescribingEventWithSchema:(NSString *)schema
                                      data:(NSDictionary<NSString *, id> *)data {
  NSMutableString *line = [NSMutableString stringWithFormat:@"core   | event %@", schema];
  for (NSString *key in [data.allKeys sortedArrayUsingSelector:@selector(compare:)]) {
    id value = [data objectForKey:key];
    if ([value isKindOfClass:[NSString class]]) {
      [line appendFormat:@"\n         %@: %@", key, value];
    }
  }
  print(line);
}

- (void)registerPushToken:(NSString *)token {
  print([NSString stringWithFormat:@"core   | registers the token %@", token]);
}

- (void)savePushPermission:(BOOL)granted {
  print(granted ? @"core   | stores: push is allowed" : @"core   | stores: push is not allowed");
}

- (void)saveFCMToken:(NSString *)token {
  print([NSString stringWithFormat:@"core   | stores the token %@", token]);
}

@end
