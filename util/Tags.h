// How a tag is written in a URL template.
#pragma once

#include <string_view>

namespace morvelune {

// What stands before and after a tag's name, in the order in which a tag is looked for; in lower
// case. A template that was itself URL-encoded carries its bars as "%7c" or "%7C"; the search
// ignores case, so one spelling finds both.
inline constexpr std::string_view tagDelimiters[] = {"|", "%7c"};

}  // namespace morvelune
