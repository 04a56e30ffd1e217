// The principal class of the notification service extension.
#import <MorveluneExtension/MorveluneExtension.h>

@interface NotificationService : MVLNotificationServiceExtension
@end
