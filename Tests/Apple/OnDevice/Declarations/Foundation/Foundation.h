// The part of Foundation's declarations that the bundle uses, to compile it where there is no SDK.

#pragma once

#include <objc/NSObject.h>

#define FOUNDATION_EXPORT extern
#define NS_ASSUME_NONNULL_BEGIN _Pragma("clang assume_nonnull begin")
#define NS_ASSUME_NONNULL_END _Pragma("clang assume_nonnull end")
#define NS_ENUM(type, name) \
  enum name : type name;    \
  enum name : type
#define NS_OPTIONS(type, name) \
  type name;                   \
  enum : type

@class NSData, NSURL;

NS_ASSUME_NONNULL_BEGIN

typedef struct _NSRange {
  NSUInteger location;
  NSUInteger length;
} NSRange;
static inline NSRange NSMakeRange(NSUInteger location, NSUInteger length) {
  return (NSRange){location, length};
}

@interface NSString : NSObject
@property(readonly) NSUInteger length;
+ (instancetype)stringWithFormat:(NSString *)format, ...;
- (NSString *)substringWithRange:(NSRange)range;
- (BOOL)isEqualToString:(NSString *)other;
@end

@interface NSNumber : NSObject
+ (NSNumber *)numberWithUnsignedInteger:(NSUInteger)value;
@property(readonly) NSUInteger unsignedIntegerValue;
@end

@interface NSArray<Value> : NSObject
+ (instancetype)arrayWithObjects:(const Value _Nonnull[_Nullable])objects count:(NSUInteger)count;
@property(readonly) NSUInteger count;
- (Value)objectAtIndexedSubscript:(NSUInteger)index;
- (BOOL)containsObject:(Value)object;
@end

@interface NSMutableArray<Value> : NSArray <Value>
+ (instancetype)array;
- (void)addObject:(Value)object;
@end

@interface NSDictionary<Key, Value> : NSObject
+ (instancetype)dictionaryWithObjects:(const Value _Nonnull[_Nullable])objects
                              forKeys:(const Key _Nonnull[_Nullable])keys
                                count:(NSUInteger)count;
@property(readonly, copy) NSArray<Key> *allKeys;
- (nullable Value)objectForKeyedSubscript:(Key)key;
@end

@interface NSData : NSObject
+ (nullable instancetype)dataWithContentsOfURL:(NSURL *)url;
@end

@interface NSMutableData : NSData
+ (instancetype)data;
- (void)appendBytes:(const void *)bytes length:(NSUInteger)length;
@end

@interface NSError : NSObject
@property(readonly) NSInteger code;
@property(readonly, copy) NSString *localizedDescription;
@end

@interface NSURL : NSObject
+ (nullable instancetype)URLWithString:(NSString *)text;
@property(readonly, copy) NSString *absoluteString;
@end

@interface NSBundle : NSObject
+ (NSBundle *)bundleForClass:(Class)cls;
- (nullable NSURL *)URLForResource:(NSString *)name withExtension:(NSString *)extension;
@end

@interface NSProcessInfo : NSObject
@property(class, readonly) NSProcessInfo *processInfo;
@property(readonly, copy) NSDictionary<NSString *, NSString *> *environment;
@end

@interface NSJSONSerialization : NSObject
+ (nullable id)JSONObjectWithData:(NSData *)data
                          options:(NSUInteger)options
                            error:(NSError *_Nullable *_Nullable)error;
@end

NS_ASSUME_NONNULL_END
