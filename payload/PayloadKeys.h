// The words of a push payload that the library knows and does not export. Those that it exports
// stand in MVLConstants.h.
#pragma once

#include <string_view>

#include "morvelune/MVLConstants.h"

namespace morvelune::keys {

// At the top level: the platform's section, the mark of this system's pushes, the action buttons
// and the tracking descriptor.
inline constexpr char aps[] = "aps";
inline constexpr char identifier[] = "k2tid";
inline constexpr char buttons[] = "k2tb";
inline constexpr char tracking[] = "mvl-tk";

// In the tracking descriptor, beside one entry per action: the base address, and the values of its
// tags.
inline constexpr char trackingURL[] = "url";
inline constexpr char trackingParams[] = "params";

// In a button: its action identifier, its custom parameters, and whether a content extension delays
// its dismissal after a tap.
inline constexpr char buttonIdentifier[] = "bid";
inline constexpr char buttonParams[] = "ccp";
inline constexpr char delayDismiss[] = "delay-dismiss";

// The identifier of an attachment whose entry has none.
inline constexpr char defaultAttachmentIdentifier[] = "mvl.default.id";

// The keys at the top level that are no custom parameters.
inline constexpr std::string_view reserved[] = {
    aps,
    identifier,
    "k2turl",
    "k2td",
    buttons,
    "openWithSafari",
    "zuk2t.log.id",
    "zuk2tIdentifier",
    MVLPayloadTrackingSentKey,
    tracking,
    MVLPayloadAttachmentsKey,
};

}  // namespace morvelune::keys
