// What the examples' tests use. A failure is one of the running test of GoogleTest.
#pragma once

#import <Foundation/Foundation.h>

#include "../Export.h"

NS_ASSUME_NONNULL_BEGIN

@interface XCTestExpectation : NSObject {
  BOOL _fulfilled;
}
@property(atomic) BOOL fulfilled;
- (void)fulfill;
@end

@interface XCTestCase : NSObject
- (XCTestExpectation*)expectationWithDescription:(NSString*)description;
// Ten seconds at most, whatever the timeout.
- (void)waitForExpectations:(NSArray<XCTestExpectation*>*)expectations
                    timeout:(NSTimeInterval)seconds;
@end

STANDIN_EXPORT void StandinExpectEqual(id _Nullable a, id _Nullable b, const char* file, int line);
#define XCTAssertEqualObjects(a, b) StandinExpectEqual((a), (b), __FILE__, __LINE__)

// Runs the methods of the class whose names begin with "test", and returns their number.
STANDIN_EXPORT unsigned StandinRunTests(NSString* className);

NS_ASSUME_NONNULL_END
