#import "NotificationViewController.h"

#import <MorveluneExtension/MorveluneExtension.h>

@implementation NotificationViewController

- (void)didReceiveNotification:(UNNotification*)notification {
  NSDictionary* params = [MVLNotificationContentExtension customParamsForNotification:notification];
  // An app fills its views here. There are no parameters for a notification of another sender.
  NSLog(@"custom parameters: %@", params);
}

- (void)didReceiveNotificationResponse:(UNNotificationResponse*)response
                     completionHandler:
                         (void (^)(UNNotificationContentExtensionResponseOption))completion {
  NSDictionary* params =
      [MVLNotificationContentExtension actionCustomParams:response.actionIdentifier
                                  forNotificationResponse:response];
  NSLog(@"parameters of the button: %@", params);
  // A notification that stays is for the app to dismiss.
  const BOOL stays =
      [MVLNotificationContentExtension shouldDelayDismissForNotificationResponse:response];
  completion(stays ? UNNotificationContentExtensionResponseOptionDoNotDismiss
                   : UNNotificationContentExtensionResponseOptionDismissAndForwardAction);
}

@end
