// How an app tests its own extension without a push: a request goes in, a content comes out. The
// test target has NotificationService.m among its sources, and links MorveluneExtension.
#import <XCTest/XCTest.h>

#import "../NotificationService/NotificationService.h"

@interface NotificationServiceTests : XCTestCase
@end

@implementation NotificationServiceTests

- (UNNotificationContent*)contentDeliveredForPayload:(NSDictionary*)payload {
  UNMutableNotificationContent* content = [[UNMutableNotificationContent alloc] init];
  content.categoryIdentifier = @"offer";
  content.userInfo = payload;
  UNNotificationRequest* request = [UNNotificationRequest requestWithIdentifier:@"test"
                                                                        content:content
                                                                        trigger:nil];
  XCTestExpectation* delivery = [self expectationWithDescription:@"a content"];
  __block UNNotificationContent* delivered = nil;
  NotificationService* service = [[NotificationService alloc] init];
  [service didReceiveNotificationRequest:request
                      withContentHandler:^(UNNotificationContent* result) {
                        delivered = result;
                        [delivery fulfill];
                      }];
  [self waitForExpectations:@[ delivery ] timeout:5];
  return delivered;
}

- (void)testGroupsByCategory {
  // An address that nobody serves fails at once, so that the test needs no network.
  NSDictionary* photo = @{@"att-id" : @"photo", @"att-url" : @"unserved:"};
  UNNotificationContent* content =
      [self contentDeliveredForPayload:@{@"k2tid" : @"4711", @"mvl-atts" : @[ photo ]}];
  XCTAssertEqualObjects(content.threadIdentifier, @"offer");
}

- (void)testLeavesPushesOfOtherSendersAlone {
  UNNotificationContent* content = [self contentDeliveredForPayload:@{@"other" : @1}];
  XCTAssertEqualObjects(content.threadIdentifier, @"");
}

@end
