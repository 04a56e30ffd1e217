#import <XCTest/XCTest.h>

#include <gtest/gtest.h>
#include <objc/runtime.h>

#include <cstring>

@implementation XCTestExpectation

- (void)fulfill {
  @synchronized(self) {
    _fulfilled = YES;
  }
}

- (BOOL)isFulfilled {
  @synchronized(self) {
    return _fulfilled;
  }
}

@end

@implementation XCTestCase

- (XCTestExpectation*)expectationWithDescription:(NSString*)description {
  return [[[XCTestExpectation alloc] init] autorelease];
}

- (void)waitForExpectations:(NSArray<XCTestExpectation*>*)expectations
                    timeout:(NSTimeInterval)seconds {
  NSDate* const end = [NSDate dateWithTimeIntervalSinceNow:seconds];
  for (XCTestExpectation* each in expectations) {
    while (![each isFulfilled] && [end timeIntervalSinceNow] > 0) {
      [NSThread sleepForTimeInterval:0.001];
    }
    EXPECT_TRUE([each isFulfilled]);
  }
}

@end

void StandinExpectEqual(id a, id b, const char* file, int line) {
  if (a != b && ![a isEqual:b]) {
    ADD_FAILURE_AT(file, line) << [[a description] UTF8String] << " is not "
                               << [[b description] UTF8String];
  }
}

unsigned StandinRunTests(NSString* className) {
  const Class tests = NSClassFromString(className);
  unsigned count = 0, run = 0;
  Method* const methods = class_copyMethodList(tests, &count);
  for (unsigned i = 0; i < count; ++i) {
    const SEL selector = method_getName(methods[i]);
    if (std::strncmp(sel_getName(selector), "test", 4) != 0) continue;
    @autoreleasepool {
      [[[[tests alloc] init] autorelease] performSelector:selector];
    }
    ++run;
  }
  std::free(methods);
  return run;
}
