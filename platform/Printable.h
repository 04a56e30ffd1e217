// Text that does nothing to the terminal or the log that shows it.
#pragma once

#include <string>
#include <string_view>

namespace morvelune {

// `text` with escapes in the place of what could act on a terminal, forge a line or make text look
// like another: control characters, C0 and C1 ("\n", "\u001B", "\u009B"), line and paragraph
// separators, the characters that turn the direction of writing ("\u202E"), the invisible ones
// (U+200B, U+2060 to U+2064, U+FEFF, and U+E0000 to U+E007F as "\uDB40\uDC01"), and bytes that are
// no UTF-8 ("\x9B"). The joiners U+200C and U+200D, which emoji and some scripts need, stay between
// two characters that are not ASCII; elsewhere they only hide. Whatever is ASCII and no control
// character stays, backslashes too, so that what is printable already is not changed.
[[nodiscard]] std::string printable(std::string_view text);

// The same JSON with such escapes in it. It must be UTF-8, with its control characters below U+0020
// escaped already.
[[nodiscard]] std::string printableJson(std::string_view json);

}  // namespace morvelune
