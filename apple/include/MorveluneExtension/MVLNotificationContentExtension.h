// MVLNotificationContentExtension: what a host's notification content extension asks when the user
// acts on a notification.
//
// Absent and empty are different answers: a notification of another sender, or a system action
// (opened, dismissed), gives nil; a button without parameters gives the empty dictionary.
#import <Foundation/Foundation.h>
#import <UserNotifications/UserNotifications.h>

NS_ASSUME_NONNULL_BEGIN

/// Stateless; callable from any thread.
@interface MVLNotificationContentExtension : NSObject

/// Whether the tapped button's "delay-dismiss" reads as true. A number does unless it is zero. A
/// string does when white space, a sign and zeros, each of which may be missing, are followed by Y,
/// y, T, t or a digit from 1 to 9. NO for a foreign notification, a system action and an unknown
/// button.
+ (BOOL)shouldDelayDismissForNotificationResponse:(UNNotificationResponse*)response;

/// The notification's custom parameters; nil for a notification that this system did not send. See
/// MVLPushHelpers for what may stand for a notification.
+ (nullable NSDictionary<NSString*, id>*)customParamsForNotification:(nullable id)notification;

/// The tapped button's custom parameters; the empty dictionary when there is no such button or it
/// has none. Nil for a foreign notification and a system action. The first argument is not used:
/// the action is always that of the response.
+ (nullable NSDictionary*)actionCustomParams:(nullable NSString*)action
                     forNotificationResponse:(UNNotificationResponse*)response;

@end

NS_ASSUME_NONNULL_END
