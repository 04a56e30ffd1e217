// White space, as Unicode defines it.
#pragma once

#include <string_view>

namespace morvelune {

// `text`, which is UTF-8, without the white space that it begins with: all characters that have
// the Unicode property White_Space.
[[nodiscard]] std::string_view withoutLeadingWhiteSpace(std::string_view text);

}  // namespace morvelune
