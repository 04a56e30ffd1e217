// MVLCommonHelpers: the user's country, and notifications that reach observers on the main thread.
#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

/// Stateless; callable from any thread.
@interface MVLCommonHelpers : NSObject

/// The country code of the user's locale, such as "FR"; "" when it has none.
+ (NSString*)countryCode;

/// Posts a notification through the default centre from a block on the main queue, so that a call
/// on the main thread returns before the post. Posts of one thread arrive in its order. The object
/// and the dictionary are retained until then and reach observers as the same objects; absent ones
/// as nil. Without a name nothing is posted.
+ (void)postNotificationOnMainThread:(nullable NSNotificationName)name
                              object:(nullable id)object
                            userInfo:(nullable NSDictionary*)userInfo
    NS_SWIFT_NAME(postOnMainThread(name:object:userInfo:));
/// The same without an object.
+ (void)postNotificationOnMainThread:(nullable NSNotificationName)name
                            userInfo:(nullable NSDictionary*)userInfo
    NS_SWIFT_NAME(postOnMainThread(name:userInfo:));
/// The same without an object and a dictionary.
+ (void)postNotificationOnMainThread:(nullable NSNotificationName)name
    NS_SWIFT_NAME(postOnMainThread(name:));

@end

NS_ASSUME_NONNULL_END
