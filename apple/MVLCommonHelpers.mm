#import <MorveluneExtension/MVLCommonHelpers.h>

#include "morvelune/MVLCommonHelpers.h"
#import "platform/apple/Conversion.h"

using namespace morvelune::apple;

@implementation MVLCommonHelpers

+ (NSString*)countryCode {
  return toNative(morvelune::MVLCommonHelpers::countryCode());
}

+ (void)postNotificationOnMainThread:(NSNotificationName)name
                              object:(id)object
                            userInfo:(NSDictionary*)userInfo {
  morvelune::MVLCommonHelpers::postNotificationOnMainThread(
      optionalFromNative(name), retained(object), optionalFromNative(userInfo));
}

+ (void)postNotificationOnMainThread:(NSNotificationName)name userInfo:(NSDictionary*)userInfo {
  [self postNotificationOnMainThread:name object:nil userInfo:userInfo];
}

+ (void)postNotificationOnMainThread:(NSNotificationName)name {
  [self postNotificationOnMainThread:name object:nil userInfo:nil];
}

@end
