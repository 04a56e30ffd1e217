#import <MorveluneExtension/MVLNotificationContentExtension.h>

#include "morvelune/MVLNotificationContentExtension.h"
#import "platform/apple/Conversion.h"

using namespace morvelune::apple;

@implementation MVLNotificationContentExtension

+ (BOOL)shouldDelayDismissForNotificationResponse:(UNNotificationResponse*)response {
  return morvelune::MVLNotificationContentExtension::shouldDelayDismissForNotificationResponse(
      fromNative(response));
}

+ (NSDictionary*)customParamsForNotification:(id)notification {
  return toNative(morvelune::MVLNotificationContentExtension::customParamsForNotification(
      notificationFromNative(notification)));
}

+ (NSDictionary*)actionCustomParams:(NSString*)action
            forNotificationResponse:(UNNotificationResponse*)response {
  return toNative(morvelune::MVLNotificationContentExtension::actionCustomParams(
      optionalFromNative(action), fromNative(response)));
}

@end
