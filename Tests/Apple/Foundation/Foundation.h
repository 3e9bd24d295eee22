// The part of Foundation's declarations that hosts use in the check, whose headers cannot be had.
// What these build on, the object runtime's own, are the platform's.

#pragma once

#include <objc/NSObject.h>

#define NS_ASSUME_NONNULL_BEGIN _Pragma("clang assume_nonnull begin")
#define NS_ASSUME_NONNULL_END _Pragma("clang assume_nonnull end")

#define NS_OPTIONS(type, name) \
  type name;                   \
  enum : type

@interface NSString : NSObject
+ (NSString *)stringWithUTF8String:(const char *)text;
@property(readonly) const char *UTF8String;
@end

@interface NSData : NSObject
@property(readonly) NSUInteger length;
@property(readonly) const void *bytes;
@end

@interface NSDictionary<Key, Value> : NSObject
@property(readonly) NSUInteger count;
- (Value)objectForKey:(Key)key;
- (Value)objectForKeyedSubscript:(Key)key;
@end

@interface NSError : NSObject
@property(readonly) NSInteger code;
@property(readonly, copy) NSString *localizedDescription;
@end

@interface NSURL : NSObject
@property(readonly) NSString *absoluteString;
@end
