// The steps and the state of MVLNotificationServiceExtension, for subclasses to call. The umbrella
// header leaves it out: import it where such a subclass is implemented.
//
// The library does not call these methods itself, so overriding one does not change how a request
// is processed.
#import <MorveluneExtension/MVLNotificationServiceExtension.h>

NS_ASSUME_NONNULL_BEGIN

@interface MVLNotificationServiceExtension (Subclass)

/// Puts the attachments in place and calls the handler, if there is one, with the best attempt
/// content itself.
- (void)excuteCompletionHandler;
/// Sets the best attempt content's attachments: those collected, in ascending byte order of their
/// identifiers; among equal ones, in the order in which their downloads completed.
- (void)updateBestAttemptContentAttachements;

/// The display tracking request, not started; raises the operations count. Nil, with no effect,
/// when the payload gives no tracking address for "display".
- (nullable NSURLSessionDataTask*)trackingTaskForNotification:(NSDictionary*)notification;
/// One download per entry of "mvl-atts", in order, not started; raises the operations count by
/// their number before the first is made. Empty when there are none.
- (NSArray<NSURLSessionDownloadTask*>*)attachmentsTasksForNotification:(NSDictionary*)notification;
/// The download of one entry, not started and not counted yet: raise the count before it starts. An
/// entry without a valid address gives a task that fails; the identifier is "mvl.default.id" when
/// the entry has none.
- (NSURLSessionDownloadTask*)downloadTaskForAttachment:(NSDictionary*)attachment;
/// Moves a downloaded file to a unique name in its folder. Gives that name's file URL, also when
/// the move failed, which is logged.
- (NSURL*)saveTempFile:(NSURL*)tempFile
    attachmentWithIdentifier:(NSString*)identifier NS_SWIFT_NAME(saveTempFile(_:identifier:));

/// Signature records by type: Uniform Type Identifier to an array of records of FSign(). The same
/// object on every call. Any thread.
- (NSDictionary<NSString*, NSArray<NSDictionary<NSString*, id>*>*>*)UTIMap;
/// The type that the first 16 bytes tell; nil when no signature matches or there are fewer.
- (nullable NSString*)UTIForData:(nullable NSData*)data;
/// The type that the content tells, else the one that the file name's extension tells. A line is
/// logged when the extension is asked.
- (nullable NSString*)UTIForData:(nullable NSData*)data
               suggestedFilename:(nullable NSString*)filename;
/// File-name extensions in lower case to types. The same object on every call. Any thread.
- (NSDictionary<NSString*, NSString*>*)knownExtensionsMap;

/// The whole state. Each single read and single write is indivisible.
@property(nonatomic, copy, nullable) void (^internalContentHandler)(UNNotificationContent*);
@property(nonatomic, strong, nullable) UNMutableNotificationContent* internalBestAttemptContent;
/// In the order in which their downloads completed. Replaced as a whole, never edited.
@property(nonatomic, copy) NSArray<UNNotificationAttachment*>* internalAttachments;
/// How many scheduled tasks have not completed yet: each completion lowers it by one.
@property(atomic) NSUInteger internalOperationsCount;

@end

NS_ASSUME_NONNULL_END
