#include "tools/morvelune/TextTable.h"

#include <algorithm>
#include <cstddef>

#include "morvelune/platform/SystemLog.h"

namespace morvelune::tool {
namespace {

std::size_t widthOf(const std::string& text) {
  return static_cast<std::size_t>(
      std::count_if(text.begin(), text.end(), [](char c) { return (c & 0xC0) != 0x80; }));
}

}  // namespace

std::string aligned(const Rows& rows) {
  std::vector<std::size_t> widths;
  for (const auto& row : rows) {
    widths.resize(std::max(widths.size(), row.size()));
    for (std::size_t i = 0; i + 1 < row.size(); ++i) {
      widths[i] = std::max(widths[i], widthOf(row[i]));
    }
  }
  std::string text;
  for (const auto& row : rows) {
    std::string line;
    for (std::size_t i = 0; i < row.size(); ++i) {
      const std::size_t width = widthOf(row[i]);
      if (std::max(width, widths[i]) == 0) continue;
      line += "  " + row[i] + std::string(std::max(width, widths[i]) - width, ' ');
    }
    text += line.erase(line.find_last_not_of(' ') + 1) + '\n';
  }
  return text;
}

std::string section(const std::string& heading, const Rows& rows) {
  return rows.empty() ? "" : heading + '\n' + aligned(rows);
}

std::string formatted(std::string_view format,
                      std::initializer_list<std::optional<std::string_view>> values) {
  class Line : public SystemLog {
   public:
    void writeLine(const std::string& line) override { text = line; }
    std::string text;
  } line;
  line.log(format, values);
  return line.text;
}

std::string shown(std::string_view text) {
  return formatted("%@", {text});
}

}  // namespace morvelune::tool
