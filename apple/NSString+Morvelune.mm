#import <MorveluneExtension/NSString+Morvelune.h>

#include "morvelune/NSStringMorvelune.h"
#import "platform/apple/Conversion.h"

using namespace morvelune::apple;

@implementation NSString (Morvelune)

- (NSString*)mvl_MD5String {
  return toNative(morvelune::mvl_MD5String(fromNative(self)));
}

- (NSString*)mvl_SHA1String {
  return toNative(morvelune::mvl_SHA1String(fromNative(self)));
}

- (NSString*)mvl_currencyString {
  return toNative(morvelune::mvl_currencyString(fromNative(self)));
}

- (BOOL)mvl_isNumberIncrementation {
  return morvelune::mvl_isNumberIncrementation(fromNative(self));
}

- (NSString*)mvl_stringByIncrementingByStringNumber:(NSString*)increment
                                    addPositiveSign:(BOOL)addPositiveSign {
  return toNative(morvelune::mvl_stringByIncrementingByStringNumber(
      fromNative(self), optionalFromNative(increment), addPositiveSign));
}

- (NSString*)mvl_URLEncodeString {
  return toNative(morvelune::mvl_URLEncodeString(fromNative(self)));
}

- (NSString*)mvl_URLDecodeString {
  return toNative(morvelune::mvl_URLDecodeString(fromNative(self)));
}

@end
