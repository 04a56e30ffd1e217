// Text that does nothing to the terminal or the log that shows it.
#pragma once

#include <string>
#include <string_view>

namespace morvelune {

// `text` with escapes in the place of what could act on a terminal, forge a line or make text look
// like another: control characters, C0 and C1 ("\n", "\u001B", "\u009B"), line and paragraph
// separators, the characters that turn the direction of writing ("\u202E"), and bytes that are no
// UTF-8 ("\x9B"). Whatever is ASCII and no control character stays, backslashes too, so that what
// is printable already is not changed.
[[nodiscard]] std::string printable(std::string_view text);

}  // namespace morvelune
