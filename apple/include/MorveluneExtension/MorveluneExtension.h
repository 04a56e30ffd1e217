// The whole public interface of the library, and its two version symbols.
//
// A notification service extension needs no more than this:
//
//   @interface NotificationService : MVLNotificationServiceExtension
//   @end
#import <Foundation/Foundation.h>

#import <MorveluneExtension/FSign.h>
#import <MorveluneExtension/MVLCommonHelpers.h>
#import <MorveluneExtension/MVLConstants.h>
#import <MorveluneExtension/MVLDefines.h>
#import <MorveluneExtension/MVLNotificationContentExtension.h>
#import <MorveluneExtension/MVLNotificationServiceExtension.h>
#import <MorveluneExtension/MVLPushHelpers.h>
#import <MorveluneExtension/MVLURLHelpers.h>
#import <MorveluneExtension/NSString+Morvelune.h>
#import <MorveluneExtension/UIScreen+Morvelune.h>
#import <MorveluneExtension/UNNotificationToDictionary.h>

/// "@(#)PROGRAM:MorveluneExtension  PROJECT:Morvelune-1\n", found by what(1) and strings(1).
MVL_EXPORT const unsigned char MorveluneExtensionVersionString[];
/// 1.0
MVL_EXPORT const double MorveluneExtensionVersionNumber;
