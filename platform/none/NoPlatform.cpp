#include <stdexcept>

#include "morvelune/platform/Platform.h"
#include "morvelune/platform/URL.h"

namespace morvelune {

std::shared_ptr<const Platform> Platform::native() {
  throw std::logic_error(
      "MorveluneExtension was built without a platform; call Platform::install() first");
}

std::optional<URL> URL::parse(std::string_view text) {
  return parseRFC2396(text);
}

}  // namespace morvelune
