#import <MorveluneExtension/FSign.h>
#import <MorveluneExtension/UNNotificationToDictionary.h>

#include "morvelune/FSign.h"
#include "morvelune/UNNotificationToDictionary.h"
#import "platform/apple/Conversion.h"

using namespace morvelune::apple;

NSDictionary<NSString*, id>* FSign(const void* bytes, NSUInteger length, NSUInteger offset) {
  return toNative(morvelune::FSign(bytes, length, offset));
}

NSDictionary<NSString*, id>* UNNotificationToDictionary(UNNotification* notification) {
  return toNative(morvelune::UNNotificationToDictionary(fromNative(notification)));
}
