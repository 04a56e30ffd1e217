#import "NotificationService.h"

@implementation NotificationService

// An app that changes nothing leaves this method out.
- (void)didReceiveNotificationRequest:(UNNotificationRequest*)request
                   withContentHandler:(void (^)(UNNotificationContent*))contentHandler {
  [super didReceiveNotificationRequest:request
                    withContentHandler:^(UNNotificationContent* content) {
                      // What was handed back untouched is no mutable content.
                      if ([content isKindOfClass:[UNMutableNotificationContent class]]) {
                        // The app's own changes. They may be made twice: when time expires, and
                        // when the last download has finished after that.
                        UNMutableNotificationContent* own = (UNMutableNotificationContent*)content;
                        own.threadIdentifier = own.categoryIdentifier;
                      }
                      contentHandler(content);
                    }];
}

// The handler above is called with what there is. An app whose own work takes time ends it here.
- (void)serviceExtensionTimeWillExpire {
  [super serviceExtensionTimeWillExpire];
}

@end
