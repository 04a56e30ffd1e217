#pragma once

#import <Foundation/Foundation.h>

#include "../Export.h"

NS_ASSUME_NONNULL_BEGIN

@class UNNotificationTrigger;

STANDIN_EXPORT NSString* const UNNotificationAttachmentOptionsTypeHintKey;

// An immutable object whose properties are the dictionary's values.
@interface StandinRecord : NSObject <NSCopying> {
  NSMutableDictionary* _fields;
}
@end

@interface UNNotificationAttachment : StandinRecord
+ (nullable instancetype)attachmentWithIdentifier:(NSString*)identifier
                                              URL:(NSURL*)URL
                                          options:(nullable NSDictionary*)options
                                            error:(NSError* _Nullable* _Nullable)error;
@property(nonatomic, readonly, copy) NSString *identifier, *type;
@property(nonatomic, readonly, copy) NSURL* URL;
@end

// A text that was not set is empty, as is the payload or the list of attachments.
@interface UNNotificationContent : StandinRecord <NSMutableCopying>
@property(nonatomic, readonly, copy) NSString *title, *subtitle, *body, *threadIdentifier,
    *categoryIdentifier;
@property(nonatomic, readonly, copy) NSDictionary* userInfo;
@property(nonatomic, readonly, copy) NSArray<UNNotificationAttachment*>* attachments;
@end

@interface UNMutableNotificationContent : UNNotificationContent
@property(nonatomic, readwrite, copy) NSString *title, *subtitle, *body, *threadIdentifier,
    *categoryIdentifier;
@property(nonatomic, readwrite, copy) NSDictionary* userInfo;
@property(nonatomic, readwrite, copy) NSArray<UNNotificationAttachment*>* attachments;
@end

@interface UNNotificationRequest : StandinRecord
+ (instancetype)requestWithIdentifier:(NSString*)identifier
                              content:(UNNotificationContent*)content
                              trigger:(nullable UNNotificationTrigger*)trigger;
@property(nonatomic, readonly, copy) UNNotificationContent* content;
@end

@interface UNNotification : StandinRecord
@property(nonatomic, readonly, copy) UNNotificationRequest* request;
@end

@interface UNNotificationResponse : StandinRecord
@property(nonatomic, readonly, copy) UNNotification* notification;
@property(nonatomic, readonly, copy) NSString* actionIdentifier;
@end

// What an app registers. Nothing but the compiler asks for these.
typedef NS_OPTIONS(NSUInteger, UNNotificationActionOptions) {
  UNNotificationActionOptionNone = 0,
  UNNotificationActionOptionForeground = 4,
};

@interface UNNotificationAction : NSObject
+ (instancetype)actionWithIdentifier:(NSString*)identifier
                               title:(NSString*)title
                             options:(UNNotificationActionOptions)options;
@end

typedef NS_OPTIONS(NSUInteger, UNNotificationCategoryOptions) {
  UNNotificationCategoryOptionNone = 0,
};

@interface UNNotificationCategory : NSObject
+ (instancetype)categoryWithIdentifier:(NSString*)identifier
                               actions:(NSArray<UNNotificationAction*>*)actions
                     intentIdentifiers:(NSArray<NSString*>*)intentIdentifiers
                               options:(UNNotificationCategoryOptions)options;
@end

@interface UNUserNotificationCenter : NSObject
+ (UNUserNotificationCenter*)currentNotificationCenter;
- (void)setNotificationCategories:(NSSet<UNNotificationCategory*>*)categories;
@end

@interface UNNotificationServiceExtension : NSObject
- (void)didReceiveNotificationRequest:(UNNotificationRequest*)request
                   withContentHandler:(void (^)(UNNotificationContent* contentToDeliver))handler;
- (void)serviceExtensionTimeWillExpire;
@end

NS_ASSUME_NONNULL_END
