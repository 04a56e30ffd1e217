// Origin: the platform's object that a value, content or attachment was made from.
#pragma once

#include <memory>

namespace morvelune {

// Shared, so that the object lives as long as what was made from it; null when there is none. The
// library passes it on and never looks into it.
using Origin = std::shared_ptr<const void>;

}  // namespace morvelune
