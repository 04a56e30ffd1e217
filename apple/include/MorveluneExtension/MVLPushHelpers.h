// MVLPushHelpers: reads a push's payload.
//
//   if ([MVLPushHelpers isMorveluneNotification:response]) {
//     NSURL *address = [MVLPushHelpers trackingURLForAction:@"dismiss" forNotification:response];
//   }
//
// A notification is a payload dictionary, a UNNotification, a UNNotificationResponse or a
// UNNotificationRequest. Values of a payload, whatever their class, come out as the same objects.
// Keys that are no strings are ignored.
#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

/// Stateless; callable from any thread.
@interface MVLPushHelpers : NSObject

/// The payload. A dictionary is returned as the same object; a UNNotification and a response give
/// UNNotificationToDictionary() of the notification; a request gives its content's userInfo as it
/// stands, with no "aps" section made up. The empty dictionary for any other object and for nil.
+ (NSDictionary*)userInfoFromNotification:(nullable id)notification;

/// Whether this system sent the notification: its payload holds the key "k2tid", with any value.
+ (BOOL)isMorveluneNotification:(nullable id)notification;

/// The tracking address of an action, such as "display": the descriptor's "url" and the action's
/// entry joined as file paths (so "//" becomes "/"), with its tags filled from the descriptor's
/// "params" over the common parameters. Nil when the payload has no descriptor "mvl-tk", when "url"
/// or the action's entry is missing or no string, and when NSURL takes the result for no URL. NSURL
/// may percent-encode it instead: it does in an app that is linked for iOS 17 or later.
+ (nullable NSURL*)trackingURLForAction:(nullable NSString*)action
                        forNotification:(nullable id)notification;

/// The payload without the keys that are reserved to the system and the platform; its values are
/// untouched. Empty for nil.
+ (NSDictionary<NSString*, id>*)customParamsFromUserInfo:(nullable NSDictionary*)userInfo;

/// The first button of "k2tb" whose "bid" is exactly the action, as the same object. Nil when there
/// is none, and for an absent action or payload. Elements that are no button never match.
+ (nullable NSDictionary*)actionParams:(nullable NSString*)action
                          fromUserInfo:(nullable NSDictionary*)userInfo;

/// The "ccp" of that button, as the same object; the empty dictionary when there is no such button,
/// or none with a dictionary there.
+ (NSDictionary*)actionCustomParams:(nullable NSString*)action
                       fromUserInfo:(nullable NSDictionary*)userInfo;

@end

NS_ASSUME_NONNULL_END
