#import "NotificationViewController.h"

#import <MorveluneExtension/MorveluneExtension.h>

@interface NotificationViewController ()
@property(nonatomic, strong) UILabel* label;
@end

@implementation NotificationViewController

// An app has a view of its own design.
- (void)loadView {
  self.label = [[UILabel alloc] init];
  self.label.numberOfLines = 0;
  self.view = self.label;
}

- (void)didReceiveNotification:(UNNotification*)notification {
  NSDictionary* params = [MVLNotificationContentExtension customParamsForNotification:notification];
  // There are no parameters for a notification of another sender.
  self.label.text = params != nil ? params.description : @"none";
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
