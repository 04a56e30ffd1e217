#import <XCTest/XCTest.h>

#include <gtest/gtest.h>

#include "tests/support/Eventually.h"

#import <GNUstepBase/GSObjCRuntime.h>

@implementation XCTestExpectation

@synthesize fulfilled = _fulfilled;

- (void)fulfill {
  self.fulfilled = YES;
}

@end

@implementation XCTestCase

- (XCTestExpectation*)expectationWithDescription:(NSString*)description {
  return [[[XCTestExpectation alloc] init] autorelease];
}

- (void)waitForExpectations:(NSArray<XCTestExpectation*>*)expectations
                    timeout:(NSTimeInterval)seconds {
  for (XCTestExpectation* each in expectations) {
    EXPECT_TRUE(morvelune::testing::eventually([each] { return each.fulfilled; }));
  }
}

@end

void StandinExpectEqual(id a, id b, const char* file, int line) {
  if (a != b && ![a isEqual:b]) ADD_FAILURE_AT(file, line) << [[a description] UTF8String];
}

unsigned StandinRunTests(NSString* className) {
  XCTestCase* const tests = [[[NSClassFromString(className) alloc] init] autorelease];
  unsigned run = 0;
  for (NSString* name in GSObjCMethodNames(tests, NO)) {
    if (![name hasPrefix:@"test"]) continue;
    [tests performSelector:NSSelectorFromString(name)];
    ++run;
  }
  return run;
}
