#include "Support.h"
#include "platform/linux/LinuxServices.h"

#import "Standins.h"

NSString* const UNNotificationAttachmentOptionsTypeHintKey =
    @"UNNotificationAttachmentOptionsTypeHintKey";

#define STANDIN_GETTER(Type, name, missing)        \
  -(Type)name {                                    \
    Type const value = [self fieldNamed:@ #name];  \
    return value != nil ? value : (Type)(missing); \
  }
#define STANDIN_SETTER(Type, Name, name) \
  -(void)set##Name : (Type)value {       \
    [self setField:value named:@ #name]; \
  }

@implementation StandinRecord

- (instancetype)init {
  return [self initWithFields:[NSDictionary dictionary]];
}

- (instancetype)initWithFields:(NSDictionary*)fields {
  self = [super init];
  _fields = [fields mutableCopy];
  return self;
}

- (void)dealloc {
  [_fields release];
  [super dealloc];
}

- (id)copyWithZone:(NSZone*)zone {
  return [self retain];
}

// Properties of one object may be used on several threads, as if each had a variable of its own.
- (id)fieldNamed:(NSString*)name {
  @synchronized(self) {
    return [[[_fields objectForKey:name] retain] autorelease];
  }
}

- (void)setField:(id)value named:(NSString*)name {
  @synchronized(self) {
    [_fields setValue:[[value copy] autorelease] forKey:name];
  }
}

@end

@implementation UNNotificationAttachment

STANDIN_GETTER(NSString*, identifier, @"")
STANDIN_GETTER(NSURL*, URL, nil)
STANDIN_GETTER(NSString*, type, @"")

+ (instancetype)attachmentWithIdentifier:(NSString*)identifier
                                     URL:(NSURL*)URL
                                 options:(NSDictionary*)options
                                   error:(NSError**)error {
  NSString* const hint = [options objectForKey:UNNotificationAttachmentOptionsTypeHintKey];
  const auto file = morvelune::URL::unchecked(URL != nil ? [[URL absoluteString] UTF8String] : "");
  const auto made = morvelune::makeLinuxNotificationAttachments()->attachment(
      [identifier UTF8String], file,
      hint != nil ? std::optional<std::string>([hint UTF8String]) : std::nullopt);
  if (const auto* const refused = std::get_if<morvelune::Error>(&made)) {
    if (error != nullptr) *error = nativeError(*refused);
    return nil;
  }
  NSString* const type = [NSString stringWithUTF8String:std::get<0>(made)->type()->c_str()];
  NSDictionary* const fields = @{@"identifier" : identifier, @"URL" : URL, @"type" : type};
  return [[[self alloc] initWithFields:fields] autorelease];
}

@end

@implementation UNNotificationContent

STANDIN_GETTER(NSString*, title, @"")
STANDIN_GETTER(NSString*, subtitle, @"")
STANDIN_GETTER(NSString*, body, @"")
STANDIN_GETTER(NSString*, threadIdentifier, @"")
STANDIN_GETTER(NSString*, categoryIdentifier, @"")
STANDIN_GETTER(NSDictionary*, userInfo, [NSDictionary dictionary])
STANDIN_GETTER(NSArray<UNNotificationAttachment*>*, attachments, [NSArray array])

- (id)mutableCopyWithZone:(NSZone*)zone {
  return [[UNMutableNotificationContent allocWithZone:zone] initWithFields:_fields];
}

@end

@implementation UNMutableNotificationContent

@dynamic title, subtitle, body, threadIdentifier, categoryIdentifier, userInfo, attachments;

// Not the base class's, whose objects must not have them.
STANDIN_SETTER(NSString*, Title, title)
STANDIN_SETTER(NSString*, Subtitle, subtitle)
STANDIN_SETTER(NSString*, Body, body)
STANDIN_SETTER(NSString*, ThreadIdentifier, threadIdentifier)
STANDIN_SETTER(NSString*, CategoryIdentifier, categoryIdentifier)
STANDIN_SETTER(NSDictionary*, UserInfo, userInfo)
STANDIN_SETTER(NSArray<UNNotificationAttachment*>*, Attachments, attachments)

- (id)copyWithZone:(NSZone*)zone {
  return [[UNNotificationContent allocWithZone:zone] initWithFields:_fields];
}

@end

@implementation UNNotificationRequest

STANDIN_GETTER(UNNotificationContent*, content, nil)

+ (instancetype)requestWithIdentifier:(NSString*)identifier
                              content:(UNNotificationContent*)content
                              trigger:(UNNotificationTrigger*)trigger {
  NSDictionary* const fields = @{@"content" : [[content copy] autorelease]};
  return [[[self alloc] initWithFields:fields] autorelease];
}

@end

@implementation UNNotification

STANDIN_GETTER(UNNotificationRequest*, request, nil)

- (instancetype)initWithRequest:(UNNotificationRequest*)request {
  return [self initWithFields:@{@"request" : request}];
}

@end

@implementation UNNotificationResponse

STANDIN_GETTER(UNNotification*, notification, nil)
STANDIN_GETTER(NSString*, actionIdentifier, @"")

- (instancetype)initWithNotification:(UNNotification*)notification
                    actionIdentifier:(NSString*)actionIdentifier {
  return [self
      initWithFields:@{@"notification" : notification, @"actionIdentifier" : actionIdentifier}];
}

@end

@implementation UNNotificationServiceExtension

- (void)didReceiveNotificationRequest:(UNNotificationRequest*)request
                   withContentHandler:(void (^)(UNNotificationContent*))handler {
}

- (void)serviceExtensionTimeWillExpire {
}

@end
