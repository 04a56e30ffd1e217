// The public interface of the library, but for platform/linux/ and the helpers platform/ASCII.h and
// platform/Path.h, and its two version symbols.
#pragma once

#include "morvelune/FSign.h"
#include "morvelune/MVLCommonHelpers.h"
#include "morvelune/MVLConstants.h"
#include "morvelune/MVLNotificationContentExtension.h"
#include "morvelune/MVLNotificationServiceExtension.h"
#include "morvelune/MVLPushHelpers.h"
#include "morvelune/MVLURLHelpers.h"
#include "morvelune/NSStringMorvelune.h"
#include "morvelune/UIScreenMorvelune.h"
#include "morvelune/UNNotificationToDictionary.h"
#include "morvelune/platform/Export.h"
#include "morvelune/platform/Platform.h"

extern "C" {
// "@(#)PROGRAM:MorveluneExtension  PROJECT:Morvelune-1\n", found by what(1) and strings(1).
MORVELUNE_API extern const unsigned char MorveluneExtensionVersionString[];
// 1.0
MORVELUNE_API extern const double MorveluneExtensionVersionNumber;
}
