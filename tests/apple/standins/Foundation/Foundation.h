// Foundation, and what GNUstep's lacks of it. The behaviour is that of Apple's documentation.
#pragma once

#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wgnu-include-next"
#include_next <Foundation/Foundation.h>
#pragma clang diagnostic pop

#include <CoreFoundation/CoreFoundation.h>

#define NS_SWIFT_NAME(name) __attribute__((swift_name(#name)))

// What Swift reads in Apple's headers but not in GNUstep's and the runtime's.
#ifdef __swift__
#include <stdbool.h>
#define BOOL bool
#undef NS_ENUM
#define NS_ENUM(Type, name) \
  enum name : Type name;    \
  enum __attribute__((enum_extensibility(open))) name : Type
#endif

NS_ASSUME_NONNULL_BEGIN

static inline CFTypeRef _Nullable CFBridgingRetain(id _Nullable object) {
#if __has_feature(objc_arc)
  return (__bridge_retained CFTypeRef)object;
#else
  return [object retain];
#endif
}

static inline id _Nullable CFBridgingRelease(CFTypeRef _Nullable object) {
#if __has_feature(objc_arc)
  return (__bridge_transfer id)object;
#else
  return [(id)object autorelease];
#endif
}

typedef struct {
  NSInteger majorVersion, minorVersion, patchVersion;
} NSOperatingSystemVersion;

@interface NSProcessInfo (Standin)
// The system is 17.4.1.
- (BOOL)isOperatingSystemAtLeastVersion:(NSOperatingSystemVersion)version;
@end

@interface NSString (Standin)
// Folds as the base library's own search without case does, whatever the options.
- (NSString*)stringByFoldingWithOptions:(NSStringCompareOptions)options
                                 locale:(nullable NSLocale*)locale;
@end

typedef NS_OPTIONS(NSUInteger, NSDataReadingOptions) { NSDataReadingMappedIfSafe = 1 };

@interface NSData (Standin)
// Maps nothing, and gives no error object.
+ (nullable instancetype)dataWithContentsOfURL:(NSURL*)url
                                       options:(NSDataReadingOptions)options
                                         error:(NSError* _Nullable* _Nullable)error;
@end

@interface NSURLSessionTask : NSObject {
  void* _state;
}
- (void)resume;
@end

@interface NSURLSessionDataTask : NSURLSessionTask
@end

@interface NSURLSessionDownloadTask : NSURLSessionTask
@end

typedef void (^StandinDataHandler)(NSData* _Nullable data, NSURLResponse* _Nullable response,
                                   NSError* _Nullable error);
typedef void (^StandinDownloadHandler)(NSURL* _Nullable location, NSURLResponse* _Nullable response,
                                       NSError* _Nullable error);

@interface NSURLSession : NSObject
+ (NSURLSession*)sharedSession;
- (NSURLSessionDataTask*)dataTaskWithURL:(NSURL*)url completionHandler:(StandinDataHandler)handler;
- (NSURLSessionDownloadTask*)downloadTaskWithURL:(NSURL*)url
                               completionHandler:(StandinDownloadHandler)handler;
@end

NS_ASSUME_NONNULL_END
