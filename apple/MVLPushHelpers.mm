#import <MorveluneExtension/MVLPushHelpers.h>

#include "morvelune/MVLPushHelpers.h"
#import "platform/apple/Conversion.h"

using namespace morvelune::apple;

@implementation MVLPushHelpers

+ (NSDictionary*)userInfoFromNotification:(id)notification {
  return toNative(
      morvelune::MVLPushHelpers::userInfoFromNotification(notificationFromNative(notification)));
}

+ (BOOL)isMorveluneNotification:(id)notification {
  return morvelune::MVLPushHelpers::isMorveluneNotification(notificationFromNative(notification));
}

+ (NSURL*)trackingURLForAction:(NSString*)action forNotification:(id)notification {
  return toNative(morvelune::MVLPushHelpers::trackingURLForAction(
      optionalFromNative(action), notificationFromNative(notification)));
}

+ (NSDictionary*)customParamsFromUserInfo:(NSDictionary*)userInfo {
  return toNative(
      morvelune::MVLPushHelpers::customParamsFromUserInfo(optionalFromNative(userInfo)));
}

+ (NSDictionary*)actionParams:(NSString*)action fromUserInfo:(NSDictionary*)userInfo {
  return toNative(morvelune::MVLPushHelpers::actionParams(optionalFromNative(action),
                                                          optionalFromNative(userInfo)));
}

+ (NSDictionary*)actionCustomParams:(NSString*)action fromUserInfo:(NSDictionary*)userInfo {
  return toNative(morvelune::MVLPushHelpers::actionCustomParams(optionalFromNative(action),
                                                                optionalFromNative(userInfo)));
}

@end
