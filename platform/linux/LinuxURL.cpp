#include "morvelune/platform/URL.h"

namespace morvelune {

std::optional<URL> URL::parse(std::string_view text) {
  return parseRFC2396(text);
}

}  // namespace morvelune
