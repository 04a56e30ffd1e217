#include <sys/stat.h>

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
  const NSInteger major = 17;
  const NSInteger minor = 4;
  const NSInteger patch = 1;
  return std::tie(major, minor, patch) >=
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
  NSString* const path = [url isFileURL] ? [url path] : @"";
  // The base library cuts a path at a zero byte, which no file's name holds.
  const bool named = [path length] > 0 && [[url absoluteString] rangeOfString:@"%00"].length == 0;
  struct stat status = {};
  if (!named || ::stat([path UTF8String], &status) != 0 || !S_ISREG(status.st_mode)) return nil;
  // The base library complains on stderr when it is asked to map no bytes.
  const bool map = (options & NSDataReadingMappedIfSafe) != 0 && status.st_size > 0;
  return map ? [self dataWithContentsOfMappedFile:path] : [self dataWithContentsOfFile:path];
}

@end
