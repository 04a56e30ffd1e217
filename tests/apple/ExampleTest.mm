// The examples' own tests, as an app runs them.
#include <gtest/gtest.h>

#import <XCTest/XCTest.h>

namespace {

TEST(ExampleTest, TheAppsOwnTestsPass) {
  EXPECT_EQ(StandinRunTests(@"NotificationServiceTests"), 2U);
}

}  // namespace
