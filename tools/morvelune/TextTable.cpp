#include "tools/morvelune/TextTable.h"

#include <algorithm>
#include <cstddef>

#include "morvelune/platform/SystemLog.h"
#include "platform/Printable.h"

namespace morvelune::tool {
namespace {

bool startsCharacter(char c) {
  return (c & 0xC0) != 0x80;
}

std::size_t widthOf(std::string_view text) {
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), startsCharacter));
}

}  // namespace

std::string cut(std::string_view text) {
  const std::size_t width = widthOf(text);
  if (width <= mostCharacters) return std::string(text);
  const std::string length = "… (" + std::to_string(width) + " characters)";
  std::size_t end = 0;
  for (std::size_t left = mostCharacters - widthOf(length); left > 0; --left) {
    do ++end;
    while (end < text.size() && !startsCharacter(text[end]));
  }
  return std::string(text.substr(0, end)) + length;
}

std::string andMore(std::size_t more, std::string_view of) {
  if (more == 0) return "";
  return "  and " + std::to_string(more) + " more" + (of.empty() ? "" : " ") + std::string(of) +
         '\n';
}

std::string aligned(const Rows& all) {
  Rows rows = all;
  std::vector<std::size_t> widths;
  for (auto& row : rows) {
    widths.resize(std::max(widths.size(), row.size()));
    for (std::size_t i = 0; i < row.size(); ++i) {
      row[i] = cut(row[i]);
      if (i + 1 < row.size()) widths[i] = std::max(widths[i], widthOf(row[i]));
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

std::string section(const std::string& heading, Rows rows, std::size_t more) {
  if (rows.empty()) return "";
  if (rows.size() > mostRows) {
    more += rows.size() - mostRows;
    rows.resize(mostRows);
  }
  return heading + '\n' + aligned(rows) + andMore(more);
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
  return printable(text);
}

}  // namespace morvelune::tool
