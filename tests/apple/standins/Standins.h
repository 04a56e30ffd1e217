// What only tests do with the stand-ins of Apple's interfaces.
#pragma once

#import <UIKit/UIKit.h>
#import <UserNotifications/UserNotifications.h>

NS_ASSUME_NONNULL_BEGIN

@interface UNNotification (Standin)
- (instancetype)initWithRequest:(UNNotificationRequest*)request;
@end

@interface UNNotificationResponse (Standin)
- (instancetype)initWithNotification:(UNNotification*)notification
                    actionIdentifier:(NSString*)actionIdentifier;
@end

// The origin of the fixed space is at `fixedOrigin` of the current one.
@interface UIScreen (Standin)
+ (UIScreen*)screenOfSize:(CGSize)size fixedOrigin:(CGPoint)fixedOrigin;
@end

STANDIN_EXPORT void StandinSetIdentifierForVendor(NSString* _Nullable identifier);
STANDIN_EXPORT void StandinSetMainScreen(UIScreen* _Nullable screen);

// Puts another implementation in the place of the class's method, or its objects', and returns the
// one that was there.
STANDIN_EXPORT IMP StandinReplace(Class owner, SEL selector, IMP implementation);

// Runs the blocks that wait on the main queue now, in order, and returns their number. Blocks that
// these queue wait for the next call.
STANDIN_EXPORT NSUInteger StandinDrainMainQueue(void);

NS_ASSUME_NONNULL_END
