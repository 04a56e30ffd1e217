#include <CoreFoundation/CoreFoundation.h>

#import <Foundation/Foundation.h>

CFTypeRef CFRetain(CFTypeRef object) {
  return [(id)object retain];
}

void CFRelease(CFTypeRef object) {
  [(id)object release];
}

CFStringRef CFURLCreateStringByAddingPercentEscapes(CFAllocatorRef, CFStringRef original,
                                                    CFStringRef,
                                                    CFStringRef legalURLCharactersToBeEscaped,
                                                    CFStringEncoding) {
  NSMutableCharacterSet* const kept = [[NSMutableCharacterSet alloc] init];
  [kept addCharactersInString:@"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz"
                               "0123456789-_.!~*'();/?:@&=+$,"];
  [kept removeCharactersInString:(NSString*)legalURLCharactersToBeEscaped];
  NSString* const escaped =
      [(NSString*)original stringByAddingPercentEncodingWithAllowedCharacters:kept];
  [kept release];
  return (CFStringRef)[escaped retain];
}
