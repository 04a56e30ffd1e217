// The payload keys and other strings that the library exports.
#pragma once

namespace morvelune {

// Names of tracking actions: a notification was received, a notification was dismissed.
inline constexpr char MVLUNCenterTrackingActionReceived[] = "display";
inline constexpr char MVLUNCenterTrackingActionDismissed[] = "dismiss";

// The payload's list of attachments, and in each of its entries the address of the media file and
// the attachment's identifier.
inline constexpr char MVLPayloadAttachmentsKey[] = "mvl-atts";
inline constexpr char MVLAttachmentURLKey[] = "att-url";
inline constexpr char MVLAttachmentIDKey[] = "att-id";

// The payload's flag that tells that the display tracking request was scheduled.
inline constexpr char MVLPayloadTrackingSentKey[] = "mvl-disp-track-sent";

// The value that says that a template parameter has none.
inline constexpr char kMVLNullValue[] = "MVLNullValue";

// Exported for host applications; the library does not use them.
inline constexpr char kMVLCloseKey[] = "zuk2tclose";
inline constexpr char kMVLUDIKey[] = "zuk2tudi";

}  // namespace morvelune
