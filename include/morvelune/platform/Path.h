// File-path operations on text, by the rules of the platform's strings. No file is looked at.
#pragma once

#include <string>
#include <string_view>

#include "morvelune/platform/Export.h"

namespace morvelune {

// `component` appended to `receiver` with one '/' between them; an empty receiver gives the
// component alone. Runs of '/' in the result become one and trailing ones are dropped, so
// "https://h/t/" and "d" give "https:/h/t/d". A result of nothing but '/' is "/".
[[nodiscard]] MORVELUNE_API std::string stringByAppendingPathComponent(std::string_view receiver,
                                                                       std::string_view component);

// The text after the last '.' of the last path component, trailing '/' ignored. Empty when there
// is no '.', when it leads (".mp3") or ends ("a.") the component, and when the text after it holds
// a blank.
[[nodiscard]] MORVELUNE_API std::string pathExtension(std::string_view path);

}  // namespace morvelune
