#import "Timeline.h"

NS_ASSUME_NONNULL_BEGIN

static BOOL hasAll(NSDictionary *entry, NSDictionary *expected) {
  for (NSUInteger i = 0; i < expected.allKeys.count; ++i) {
    const id key = expected.allKeys[i];
    const id value = expected[key];
    const id actual = entry[key];
    const BOOL isNested =
        [value isKindOfClass:NSDictionary.class] && [actual isKindOfClass:NSDictionary.class];
    if (isNested ? !hasAll(actual, value) : ![value isEqual:actual]) return NO;
  }
  return YES;
}

@implementation ZIBTimeline {
  NSMutableArray<NSDictionary *> *_entries;
}

- (instancetype)init {
  self = [super init];
  if (self) _entries = [NSMutableArray array];
  return self;
}

- (void)add:(NSDictionary *)entry {
  @synchronized(self) {
    [_entries addObject:entry];
  }
}

- (nullable NSDictionary *)firstUnmetOf:(NSArray<NSDictionary *> *)expectations {
  NSArray<NSString *> *const visible = @[ @"event", @"log", @"completion", @"system" ];
  @synchronized(self) {
    NSUInteger from = 0;
    for (NSUInteger i = 0; i < expectations.count; ++i) {
      NSDictionary *const absent = expectations[i][@"absent"];
      NSDictionary *const wanted = absent ?: expectations[i];
      if (![visible containsObject:wanted[@"kind"]]) continue;
      const NSUInteger found = [self indexOf:wanted from:absent ? 0 : from];
      const BOOL isFound = found < _entries.count;
      if (isFound == (absent != nil)) return expectations[i];
      if (isFound) from = found + 1;
    }
  }
  return nil;
}

- (NSUInteger)indexOf:(NSDictionary *)wanted from:(NSUInteger)from {
  NSUInteger index = from;
  while (index < _entries.count && !hasAll(_entries[index], wanted)) ++index;
  return index;
}

@end

NS_ASSUME_NONNULL_END
