#import "NotificationCategories.h"

#import <UserNotifications/UserNotifications.h>

void RegisterNotificationCategories(void) {
  // The identifiers are those of the payload: "bid" of a button, "category" in "aps".
  UNNotificationAction* buy =
      [UNNotificationAction actionWithIdentifier:@"buy"
                                           title:@"Buy"
                                         options:UNNotificationActionOptionForeground];
  UNNotificationAction* remind =
      [UNNotificationAction actionWithIdentifier:@"remind"
                                           title:@"Remind me"
                                         options:UNNotificationActionOptionNone];
  UNNotificationCategory* offer =
      [UNNotificationCategory categoryWithIdentifier:@"offer"
                                             actions:@[ buy, remind ]
                                   intentIdentifiers:@[]
                                             options:UNNotificationCategoryOptionNone];
  [[UNUserNotificationCenter currentNotificationCenter]
      setNotificationCategories:[NSSet setWithObject:offer]];
}
