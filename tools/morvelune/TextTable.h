// Text for people: aligned columns, and nothing in it that acts on a terminal.
#pragma once

#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace morvelune::tool {

using Rows = std::vector<std::vector<std::string>>;

// A line per row, indented by two blanks: columns as wide as their widest cell, two blanks between
// them. The last cell of a row may stick out; a column that is empty in every row is left out.
[[nodiscard]] std::string aligned(const Rows& rows);
// The same below a heading; empty without rows.
[[nodiscard]] std::string section(const std::string& heading, const Rows& rows);

// `format` with each "%@" replaced by the next value, whose control characters are escaped as in
// the platform's log.
[[nodiscard]] std::string formatted(std::string_view format,
                                    std::initializer_list<std::optional<std::string_view>> values);
// One value, escaped.
[[nodiscard]] std::string shown(std::string_view text);

}  // namespace morvelune::tool
