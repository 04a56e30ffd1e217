#import <MorveluneExtension/FSign.h>
#import <MorveluneExtension/MVLConstants.h>

NSString* const MVLUNCenterTrackingActionReceived = @"display";
NSString* const MVLUNCenterTrackingActionDismissed = @"dismiss";

NSString* const MVLPayloadAttachmentsKey = @"mvl-atts";
NSString* const MVLAttachmentURLKey = @"att-url";
NSString* const MVLAttachmentIDKey = @"att-id";
NSString* const MVLPayloadTrackingSentKey = @"mvl-disp-track-sent";

NSString* const kMVLNullValue = @"MVLNullValue";
NSString* const kMVLCloseKey = @"zuk2tclose";
NSString* const kMVLUDIKey = @"zuk2tudi";

NSString* const MVLUTIMapObjectDataKey = @"data";
NSString* const MVLUTIMapObjectLengthKey = @"length";
NSString* const MVLUTIMapObjectOffsetKey = @"offset";
