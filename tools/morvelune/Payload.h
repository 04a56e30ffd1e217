// Reads a push payload: a file that holds one JSON object (RFC 8259), as a provider would send it.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <variant>

#include "morvelune/platform/Value.h"

namespace morvelune::tool {

// Eight times the most that the push service carries, so that a payload that is too large is still
// worth a look.
inline constexpr std::size_t maximumPayloadBytes = 1 << 15;
// Objects and arrays within one another, the payload itself included.
inline constexpr std::size_t maximumPayloadDepth = 512;

// Why a payload was refused, and where: counted from 1, the column in characters.
struct PayloadError {
  std::size_t line = 1;
  std::size_t column = 1;
  std::string message;
};

struct Payload {
  Dictionary content;
  std::size_t bytes = 0;  // of its text, white space included
};

// As "LINE:COLUMN: message".
[[nodiscard]] std::string describe(const PayloadError& error);

// A byte-order mark before the object is skipped. Of equal keys in one object the last one counts.
// Integers are kept exactly up to 64 bits; a number that no double can hold is refused.
[[nodiscard]] std::variant<Payload, PayloadError> parsePayload(std::string text);
// The same for the contents of a file; "-" is standard input.
[[nodiscard]] std::variant<Payload, PayloadError> readPayload(const std::string& file);

}  // namespace morvelune::tool
