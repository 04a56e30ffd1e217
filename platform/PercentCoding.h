// Percent-encoding (RFC 3986, 2.1): "%" and two hexadecimal digits stand for a byte.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace morvelune {

// `bytes` with all but letters, digits and `kept` encoded.
[[nodiscard]] std::string percentEncoded(std::string_view bytes, std::string_view kept);

// The bytes that `text` stands for. Empty when an escape is bad or cut.
[[nodiscard]] std::optional<std::string> percentDecoded(std::string_view text);

}  // namespace morvelune
