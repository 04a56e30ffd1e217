#include "morvelune/platform/SystemLog.h"

#include "platform/Printable.h"

namespace morvelune {

void SystemLog::log(std::string_view format,
                    std::initializer_list<std::optional<std::string_view>> values) {
  constexpr std::string_view placeholder = "%@";
  std::string line;
  for (const auto& value : values) {
    const std::size_t at = format.find(placeholder);
    if (at == std::string_view::npos) break;
    line += format.substr(0, at);
    line += printable(value.value_or("(null)"));
    format.remove_prefix(at + placeholder.size());
  }
  line += format;
  writeLine(line);
}

}  // namespace morvelune
