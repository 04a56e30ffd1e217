// The payload of a delivered notification.
#import <Foundation/Foundation.h>
#import <UserNotifications/UserNotifications.h>

#import <MorveluneExtension/MVLDefines.h>

NS_ASSUME_NONNULL_BEGIN

/// A new dictionary: {"aps": {"alert": {"body", "title", "subtitle"}}} made of the texts that are
/// shown, with every entry of the content's userInfo laid over it, so that the payload's own "aps"
/// replaces the made-up one. Keys of userInfo that are no strings are left out. Any thread.
MVL_EXPORT NSDictionary<NSString*, id>* UNNotificationToDictionary(UNNotification* notification);

NS_ASSUME_NONNULL_END
