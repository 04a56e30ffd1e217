#import <MorveluneExtension/MVLNotificationServiceExtensionSubclass.h>

#include "morvelune/MVLNotificationServiceExtension.h"
#import "platform/apple/Conversion.h"

using namespace morvelune::apple;

namespace {

// The library's extension behind the platform's. It outlives its owner only while a completion of
// the tracking request runs.
class Core : public morvelune::MVLNotificationServiceExtension {
 public:
  explicit Core(::MVLNotificationServiceExtension* owner) : owner_(owner) {}

  using MVLNotificationServiceExtension::attachmentsTasksForNotification;
  using MVLNotificationServiceExtension::downloadTaskForAttachment;
  using MVLNotificationServiceExtension::excuteCompletionHandler;
  using MVLNotificationServiceExtension::internalAttachments;
  using MVLNotificationServiceExtension::internalBestAttemptContent;
  using MVLNotificationServiceExtension::internalContentHandler;
  using MVLNotificationServiceExtension::internalOperationsCount;
  using MVLNotificationServiceExtension::knownExtensionsMap;
  using MVLNotificationServiceExtension::saveTempFile;
  using MVLNotificationServiceExtension::setInternalAttachments;
  using MVLNotificationServiceExtension::setInternalBestAttemptContent;
  using MVLNotificationServiceExtension::setInternalContentHandler;
  using MVLNotificationServiceExtension::setInternalOperationsCount;
  using MVLNotificationServiceExtension::trackingTaskForNotification;
  using MVLNotificationServiceExtension::updateBestAttemptContentAttachements;
  using MVLNotificationServiceExtension::UTIForData;
  using MVLNotificationServiceExtension::UTIMap;

 private:
  // A download keeps the platform's object alive, which owns this one.
  std::shared_ptr<MVLNotificationServiceExtension> retainedSelf() override {
    return {retained(owner_), this};
  }

  // Not retained, for it owns this.
  __unsafe_unretained ::MVLNotificationServiceExtension* const owner_;
};

}  // namespace

struct MVLNotificationServiceExtensionCore {
  std::shared_ptr<Core> extension;
};

@implementation MVLNotificationServiceExtension

- (instancetype)init {
  if ((self = [super init])) {
    _core = new MVLNotificationServiceExtensionCore{std::make_shared<Core>(self)};
  }
  return self;
}

- (void)dealloc {
  delete _core;
#if !__has_feature(objc_arc)
  [super dealloc];
#endif
}

- (UNNotificationContent*)mvlBestAttemptContent {
  return toNative(_core->extension->mvlBestAttemptContent().get());
}

- (void)didReceiveNotificationRequest:(UNNotificationRequest*)request
                   withContentHandler:(void (^)(UNNotificationContent*))contentHandler {
  @autoreleasepool {
    _core->extension->didReceiveNotificationRequest(fromNative(request),
                                                    fromNative(contentHandler));
  }
}

- (void)serviceExtensionTimeWillExpire {
  @autoreleasepool {
    _core->extension->serviceExtensionTimeWillExpire();
  }
}

@end

@implementation MVLNotificationServiceExtension (Subclass)

- (void)excuteCompletionHandler {
  _core->extension->excuteCompletionHandler();
}

- (void)updateBestAttemptContentAttachements {
  _core->extension->updateBestAttemptContentAttachements();
}

- (NSURLSessionDataTask*)trackingTaskForNotification:(NSDictionary*)notification {
  const auto task = _core->extension->trackingTaskForNotification(fromNative(notification));
  return static_cast<NSURLSessionDataTask*>(toNative(task.get()));
}

- (NSArray*)attachmentsTasksForNotification:(NSDictionary*)notification {
  NSMutableArray* tasks = [NSMutableArray array];
  for (const auto& each :
       _core->extension->attachmentsTasksForNotification(fromNative(notification))) {
    if (NSURLSessionTask* task = toNative(each.get())) [tasks addObject:task];
  }
  return autoreleased([tasks copy]);
}

- (NSURLSessionDownloadTask*)downloadTaskForAttachment:(NSDictionary*)attachment {
  const auto task = _core->extension->downloadTaskForAttachment(fromNative(attachment));
  return static_cast<NSURLSessionDownloadTask*>(toNative(task.get()));
}

- (NSURL*)saveTempFile:(NSURL*)tempFile attachmentWithIdentifier:(NSString*)identifier {
  const auto file = fromNative(tempFile).value_or(morvelune::URL::fileURL(""));
  return toNative(_core->extension->saveTempFile(file, fromNative(identifier)));
}

- (NSDictionary*)UTIMap {
  static const auto& map = *new morvelune::Origin(retained(toNative(_core->extension->UTIMap())));
  return objectOf(map);
}

- (NSString*)UTIForData:(NSData*)data {
  return toNative(_core->extension->UTIForData(optionalFromNative(data)));
}

- (NSString*)UTIForData:(NSData*)data suggestedFilename:(NSString*)filename {
  return toNative(
      _core->extension->UTIForData(optionalFromNative(data), optionalFromNative(filename)));
}

- (NSDictionary*)knownExtensionsMap {
  static const auto& map =
      *new morvelune::Origin(retained(toNative(_core->extension->knownExtensionsMap())));
  return objectOf(map);
}

- (void (^)(UNNotificationContent*))internalContentHandler {
  return toNative(_core->extension->internalContentHandler());
}

- (void)setInternalContentHandler:(void (^)(UNNotificationContent*))handler {
  _core->extension->setInternalContentHandler(fromNative(handler));
}

- (UNMutableNotificationContent*)internalBestAttemptContent {
  const auto content = _core->extension->internalBestAttemptContent();
  return static_cast<UNMutableNotificationContent*>(toNative(content.get()));
}

- (void)setInternalBestAttemptContent:(UNMutableNotificationContent*)content {
  _core->extension->setInternalBestAttemptContent(fromNative(content));
}

- (NSArray*)internalAttachments {
  return toNative(_core->extension->internalAttachments());
}

- (void)setInternalAttachments:(NSArray*)attachments {
  _core->extension->setInternalAttachments(fromNative(attachments));
}

- (NSUInteger)internalOperationsCount {
  return _core->extension->internalOperationsCount();
}

- (void)setInternalOperationsCount:(NSUInteger)count {
  _core->extension->setInternalOperationsCount(count);
}

@end
