// The root class and its protocol, as Swift imports them.

#pragma once

#pragma clang assume_nonnull begin

#if defined(__OBJC_BOOL_IS_BOOL) && __OBJC_BOOL_IS_BOOL
typedef _Bool BOOL;
#else
typedef signed char BOOL;
#endif
#define YES ((BOOL)1)
#define NO ((BOOL)0)
#define nil ((id)0)

typedef long NSInteger;
typedef unsigned long NSUInteger;

@protocol NSObject
- (BOOL)isEqual:(nullable id)object;
@property(readonly) NSUInteger hash;
- (BOOL)respondsToSelector:(SEL)selector;
@end

__attribute__((objc_root_class))
@interface NSObject<NSObject>
+ (void)initialize;
+ (instancetype)alloc;
+ (Class)class;
- (instancetype)init;
+ (instancetype)new;
- (void)dealloc;
@end

#pragma clang assume_nonnull end
