// The operation that the library adds to the platform's screens.
#pragma once

#include <cstddef>
#include <memory>

#include "morvelune/platform/Screen.h"

namespace morvelune {

// The interface orientation as the platform codes it: 1 portrait, 2 portrait upside down,
// 3 landscape right, 4 landscape left, told from where the fixed coordinate space's origin lies in
// the current one. 0 (unknown) when there is no screen or it cannot tell.
[[nodiscard]] std::ptrdiff_t mvl_currentOrientation(const std::shared_ptr<const Screen>& screen);

}  // namespace morvelune
