#import <MorveluneExtension/MVLCommonHelpers.h>

#include "morvelune/MVLCommonHelpers.h"
#import "platform/apple/Conversion.h"

using namespace morvelune::apple;

@implementation MVLCommonHelpers

+ (NSString*)countryCode {
  return toNative(morvelune::MVLCommonHelpers::countryCode());
}

+ (void)postNotificationOnMainThread:(NSString*)name
                              object:(id)object
                            userInfo:(NSDictionary*)userInfo {
  morvelune::MVLCommonHelpers::postNotificationOnMainThread(
      optionalFromNative(name), retained(object), optionalFromNative(userInfo));
}

+ (void)postNotificationOnMainThread:(NSString*)name userInfo:(NSDictionary*)userInfo {
  [self postNotificationOnMainThread:name object:nil userInfo:userInfo];
}

+ (void)postNotificationOnMainThread:(NSString*)name {
  [self postNotificationOnMainThread:name object:nil userInfo:nil];
}

@end
