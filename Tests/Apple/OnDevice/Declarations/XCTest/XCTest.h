// The part of XCTest's declarations that the bundle uses, to compile it where there is no SDK.

#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

@interface XCTestExpectation : NSObject
- (void)fulfill;
@end

@interface XCTestCase : NSObject
@property BOOL continueAfterFailure;
- (XCTestExpectation *)expectationWithDescription:(NSString *)description;
- (void)waitForExpectations:(NSArray<XCTestExpectation *> *)expectations timeout:(double)seconds;
- (void)recordFailureWithDescription:(NSString *)description
                              inFile:(NSString *)path
                              atLine:(NSUInteger)line
                            expected:(BOOL)expected;
@end

#define XCTFail(...)                                                             \
  [self recordFailureWithDescription:[NSString stringWithFormat:@"" __VA_ARGS__] \
                              inFile:@__FILE__                                   \
                              atLine:__LINE__                                    \
                            expected:YES]
#define XCTAssertTrue(expression, ...)       \
  do {                                       \
    if (!(expression)) XCTFail(__VA_ARGS__); \
  } while (0)
#define XCTAssertNotNil(expression, ...) XCTAssertTrue((expression) != nil, __VA_ARGS__)

NS_ASSUME_NONNULL_END
