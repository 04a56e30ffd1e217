#include <sys/stat.h>

#include <tuple>

#import "Standins.h"

// The base library leaves behind at exit what some of its classes make on first use. Made while
// this class is loaded, it counts as the start's, which leak reports leave out.
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

static NSOperatingSystemVersion systemVersion = {17, 0, 0};

void StandinSetSystemVersion(NSOperatingSystemVersion version) {
  systemVersion = version;
}

@implementation NSProcessInfo (Standin)

- (BOOL)isOperatingSystemAtLeastVersion:(NSOperatingSystemVersion)version {
  const auto order = [](const NSOperatingSystemVersion& v) {
    return std::tie(v.majorVersion, v.minorVersion, v.patchVersion);
  };
  return order(systemVersion) >= order(version);
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
  NSData* data = nil;
  NSInteger code = NSFileReadUnknownError;
  if (!named || ::stat([path UTF8String], &status) != 0) {
    code = NSFileReadNoSuchFileError;
  } else if (S_ISREG(status.st_mode)) {
    // The base library complains on stderr when it is asked to map no bytes.
    const bool map = (options & NSDataReadingMappedIfSafe) != 0 && status.st_size > 0;
    data = map ? [self dataWithContentsOfMappedFile:path] : [self dataWithContentsOfFile:path];
  }
  if (data == nil && error != nullptr) {
    *error = [NSError errorWithDomain:NSCocoaErrorDomain code:code userInfo:nil];
  }
  return data;
}

@end
