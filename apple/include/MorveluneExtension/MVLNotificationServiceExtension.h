// MVLNotificationServiceExtension: enriches and measures each notification before it is shown.
//
// Make it the principal class of a notification service extension, or derive that class from it:
//
//   @interface NotificationService : MVLNotificationServiceExtension
//   @end
//
// For a notification that this system sent it schedules the display tracking request and one
// download per attachment, starts them all at once and calls the handler with the enriched content
// when the last one has finished, or earlier when the platform says that time is up. Any other
// notification is handed back untouched.
#import <Foundation/Foundation.h>
#import <UserNotifications/UserNotifications.h>

NS_ASSUME_NONNULL_BEGIN

struct MVLNotificationServiceExtensionCore;

/// It overrides both methods of the platform's class, whose header declares them.
///
/// `didReceiveNotificationRequest:withContentHandler:` processes one request. The handler gets the
/// request's own content, at once, when this system did not send the notification or when there is
/// nothing to do for it, and otherwise a mutable copy of it with all its properties. One request is
/// handled at a time: the next may follow once the handler has been called.
///
/// `serviceExtensionTimeWillExpire` calls the handler at once with what has been collected so far,
/// whether or not it was called before. It does nothing before the first request of this system.
///
/// A request, expiry and reads of the best attempt may come on different threads while completions
/// run on the shared session's callback queue. The handler is called on the thread that delivers,
/// and again when tasks finish after time has expired. It is kept until the next request comes: one
/// that uses the extension itself captures it weakly, or neither is ever released.
@interface MVLNotificationServiceExtension : UNNotificationServiceExtension {
 @private
  struct MVLNotificationServiceExtensionCore* _core;
}

/// A copy of the content that would be delivered now, with the attachments finished so far in
/// ascending byte order of their identifiers. Nil before the first request of this system.
@property(nonatomic, readonly, nullable) UNNotificationContent* mvlBestAttemptContent;

@end

NS_ASSUME_NONNULL_END
