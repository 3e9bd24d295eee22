// The part of Foundation's declarations that the Objective-C face and hosts in Swift use, with what
// tells Swift how to bridge them.

#pragma once

#if __has_feature(modules)
@import ObjectiveC;
#else
#import "ObjectiveC/ObjectiveC.h"
#endif

#define FOUNDATION_EXPORT extern
#define NS_ASSUME_NONNULL_BEGIN _Pragma("clang assume_nonnull begin")
#define NS_ASSUME_NONNULL_END _Pragma("clang assume_nonnull end")
#define NS_SWIFT_NAME(name) __attribute__((swift_name(#name)))
#define NS_ENUM(type, name)                                        \
  enum __attribute__((enum_extensibility(open))) name : type name; \
  enum name : type
#define NS_OPTIONS(type, name)                                                \
  enum __attribute__((flag_enum, enum_extensibility(open))) name : type name; \
  enum name : type
#define NS_ERROR_ENUM(domain, name)                                                              \
  enum __attribute__((ns_error_domain(domain), enum_extensibility(open))) name : NSInteger name; \
  enum name : NSInteger
#define ZIB_BRIDGE(type) __attribute__((swift_bridge(type)))

NS_ASSUME_NONNULL_BEGIN

@protocol NSCopying
@end

ZIB_BRIDGE("Swift.String")
@interface NSString : NSObject <NSCopying>
@end
typedef NSString *NSErrorDomain __attribute__((swift_wrapper(struct)));

ZIB_BRIDGE("Foundation.Data")
@interface NSData : NSObject
@end

ZIB_BRIDGE("Swift.Dictionary")
@interface NSDictionary<Key : id <NSCopying>, Value> : NSObject
+ (instancetype)dictionaryWithObjects:(const Value _Nonnull[_Nullable])objects
                              forKeys:(const Key _Nonnull[_Nullable])keys
                                count:(NSUInteger)count;
@end

ZIB_BRIDGE("Swift.Array")
@interface NSArray<Value> : NSObject
@end

@interface NSMutableArray<Value> : NSArray <Value>
+ (instancetype)array;
- (void)addObject:(Value)object;
@end

ZIB_BRIDGE("Swift.Error")
@interface NSError : NSObject
@property(readonly) NSInteger code;
@end

ZIB_BRIDGE("Foundation.URL")
@interface NSURL : NSObject
@end

NS_ASSUME_NONNULL_END
