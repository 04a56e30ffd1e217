#include <CoreFoundation/CoreFoundation.h>

#import <Foundation/Foundation.h>

CFTypeRef CFRetain(CFTypeRef object) {
  return [(id)object retain];
}

void CFRelease(CFTypeRef object) {
  [(id)object release];
}

CFStringRef CFURLCreateStringByAddingPercentEscapes(CFAllocatorRef, CFStringRef original,
                                                    CFStringRef charactersToLeaveUnescaped,
                                                    CFStringRef legalURLCharactersToBeEscaped,
                                                    CFStringEncoding encoding) {
  if (encoding != kCFStringEncodingUTF8) return nullptr;
  NSMutableCharacterSet* const kept = [[NSMutableCharacterSet alloc] init];
  [kept addCharactersInString:@"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz"
                               "0123456789-_.!~*'();/?:@&=+$,"];
  [kept removeCharactersInString:(NSString*)legalURLCharactersToBeEscaped];
  if (charactersToLeaveUnescaped != nullptr) {
    [kept addCharactersInString:(NSString*)charactersToLeaveUnescaped];
  }
  NSString* const escaped =
      [(NSString*)original stringByAddingPercentEncodingWithAllowedCharacters:kept];
  [kept release];
  return (CFStringRef)[escaped retain];
}
