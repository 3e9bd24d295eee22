// What happened, as entries like those of zibsim's timeline, and what a scenario expects of them.

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

__attribute__((objc_subclassing_restricted))
@interface ZIBTimeline : NSObject
- (void)add:(NSDictionary *)entry;
// Nil when the entries have what is expected, in order, and otherwise the first that is missing or
// should be absent. An expectation is met by an entry that has all of its fields. Those of a kind
// that a test cannot see on a device are passed over.
- (nullable NSDictionary *)firstUnmetOf:(NSArray<NSDictionary *> *)expectations;
@end

NS_ASSUME_NONNULL_END
