// The payload keys and other strings that the library exports.
#import <Foundation/Foundation.h>

#import <MorveluneExtension/MVLDefines.h>

NS_ASSUME_NONNULL_BEGIN

/// Name of the tracking action of a received notification: "display".
MVL_EXPORT NSString* const MVLUNCenterTrackingActionReceived;
/// Name of the tracking action of a dismissed notification: "dismiss".
MVL_EXPORT NSString* const MVLUNCenterTrackingActionDismissed;

/// The payload's list of attachments: "mvl-atts".
MVL_EXPORT NSString* const MVLPayloadAttachmentsKey;
/// In an entry of that list, the address of the media file: "att-url".
MVL_EXPORT NSString* const MVLAttachmentURLKey;
/// In an entry of that list, the attachment's identifier: "att-id".
MVL_EXPORT NSString* const MVLAttachmentIDKey;

/// The flag in the delivered payload that is true when the display tracking request was scheduled:
/// "mvl-disp-track-sent".
MVL_EXPORT NSString* const MVLPayloadTrackingSentKey;

/// The value of a template parameter that has no value: "MVLNullValue".
MVL_EXPORT NSString* const kMVLNullValue;

/// For host applications, "zuk2tclose"; the library does not use it.
MVL_EXPORT NSString* const kMVLCloseKey;
/// For host applications, "zuk2tudi"; the library does not use it.
MVL_EXPORT NSString* const kMVLUDIKey;

NS_ASSUME_NONNULL_END
