// Text for people: aligned columns, and nothing in it that acts on a terminal.
#pragma once

#include <cstddef>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace morvelune::tool {

using Rows = std::vector<std::vector<std::string>>;

// Bounds of what is laid out, whatever it was made from.
inline constexpr std::size_t mostCharacters = 200;  // of a cell, or of a part of a sentence
inline constexpr std::size_t mostRows = 200;        // of a section

// A text of more than mostCharacters as its beginning and how long it is: "abc… (300 characters)".
[[nodiscard]] std::string cut(std::string_view text);
// "and 3 more", on a line of its own, indented by two blanks; empty for none.
[[nodiscard]] std::string andMore(std::size_t more, std::string_view of = "");

// A line per row, indented by two blanks: columns as wide as their widest cell, two blanks between
// them. Cells are cut. The last cell of a row may stick out; a column that is empty in every row is
// left out.
[[nodiscard]] std::string aligned(const Rows& rows);
// The first rows below a heading, and how many more there are, with those that the caller left out;
// empty when there are none.
[[nodiscard]] std::string section(const std::string& heading, Rows rows, std::size_t more = 0);

// `format` with each "%@" replaced by the next value, escaped as in the platform's log.
[[nodiscard]] std::string formatted(std::string_view format,
                                    std::initializer_list<std::optional<std::string_view>> values);
// The text made safe for a terminal. Whatever comes from outside passes here, or formatted(),
// before it is printed.
[[nodiscard]] std::string shown(std::string_view text);

}  // namespace morvelune::tool
