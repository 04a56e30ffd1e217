// The operation that the library adds to the platform's screens.
#pragma once

#include <memory>

#include "morvelune/platform/Export.h"
#include "morvelune/platform/Screen.h"

namespace morvelune {

// The interface orientation, told from where the fixed coordinate space's origin lies in the
// current one. Unknown when there is no screen or it cannot tell.
[[nodiscard]] MORVELUNE_API UIInterfaceOrientation
mvl_currentOrientation(const std::shared_ptr<const Screen>& screen);

}  // namespace morvelune
