#import <Foundation/Foundation.h>
#include <gtest/gtest.h>

#include <cstdlib>

#include "support/TemporaryDirectory.h"

// The address sanitizer reports what the library leaks, but not what the Objective-C runtime and
// the base library keep from loading their classes. Both are built without frame pointers, so that
// only the slow unwinder finds who allocated.
extern "C" const char* __asan_default_options() {
  return "fast_unwind_on_malloc=0";
}
extern "C" const char* __lsan_default_options() {
  return "print_suppressions=0";
}
extern "C" const char* __lsan_default_suppressions() {
  return "leak:__objc_exec_class\nleak:GSObjCAddClassBehavior\n";
}

namespace {

// Each test has a pool of its own, so that what it autoreleases is gone when the next one starts.
class PoolPerTest : public testing::EmptyTestEventListener {
  void OnTestStart(const testing::TestInfo&) override { pool_ = [[NSAutoreleasePool alloc] init]; }
  void OnTestEnd(const testing::TestInfo&) override { [pool_ drain]; }
  NSAutoreleasePool* pool_ = nil;
};

}  // namespace

int main(int argc, char** argv) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  // What is attached stays where it was staged, as on a device; here it goes with the program.
  const morvelune::testing::TemporaryDirectory temporary;
  ::setenv("TMPDIR", temporary.path().c_str(), 1);
  testing::InitGoogleTest(&argc, argv);
  testing::UnitTest::GetInstance()->listeners().Append(new PoolPerTest);
  const int status = RUN_ALL_TESTS();
  [pool drain];
  return status;
}
