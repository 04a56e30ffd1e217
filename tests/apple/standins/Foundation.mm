#include <objc/runtime.h>

#include <tuple>

#import "Standins.h"

// Some classes of the base library keep until exit what they make on first use, which would count
// as leaked. Here they are used while classes are loaded, and main.mm suppresses what is made then.
@interface StandinFirstUse : NSObject
@end

@implementation StandinFirstUse

+ (void)load {
  @autoreleasepool {
    [NSBundle class];
    [NSArray class];
    [NSURLComponents class];
  }
}

@end

@implementation NSProcessInfo (Standin)

- (BOOL)isOperatingSystemAtLeastVersion:(NSOperatingSystemVersion)version {
  return std::tuple(17, 4, 1) >=
         std::tie(version.majorVersion, version.minorVersion, version.patchVersion);
}

@end

@implementation NSString (Standin)

- (NSString*)stringByFoldingWithOptions:(NSStringCompareOptions)options locale:(NSLocale*)locale {
  return [self lowercaseString];
}

@end

@implementation NSData (Standin)

+ (instancetype)dataWithContentsOfURL:(NSURL*)url
                              options:(NSDataReadingOptions)options
                                error:(NSError**)error {
  return [self dataWithContentsOfFile:[url path]];
}

@end

IMP StandinReplace(Class owner, SEL selector, IMP implementation) {
  const Method own = class_getInstanceMethod(owner, selector);
  return method_setImplementation(own ? own : class_getClassMethod(owner, selector),
                                  implementation);
}
