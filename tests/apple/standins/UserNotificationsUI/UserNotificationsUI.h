#pragma once

#import <UserNotifications/UserNotifications.h>

NS_ASSUME_NONNULL_BEGIN

typedef NS_ENUM(NSUInteger, UNNotificationContentExtensionResponseOption) {
  UNNotificationContentExtensionResponseOptionDoNotDismiss,
  UNNotificationContentExtensionResponseOptionDismiss,
  UNNotificationContentExtensionResponseOptionDismissAndForwardAction,
};

@protocol UNNotificationContentExtension <NSObject>
- (void)didReceiveNotification:(UNNotification*)notification;
@optional
- (void)didReceiveNotificationResponse:(UNNotificationResponse*)response
                     completionHandler:
                         (void (^)(UNNotificationContentExtensionResponseOption option))completion;
@end

NS_ASSUME_NONNULL_END
