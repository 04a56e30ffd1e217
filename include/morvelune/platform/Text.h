// Text: operations on UTF-8 text that need the platform's Unicode data or its exact rules.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "morvelune/platform/Export.h"

namespace morvelune {

// The location of a range that was not found: the largest signed machine integer.
inline constexpr std::size_t NSNotFound = static_cast<std::size_t>(PTRDIFF_MAX);

// A part of a string, in units of the string's own characters: bytes of its UTF-8.
struct NSRange {
  std::size_t location = NSNotFound;
  std::size_t length = 0;
  friend bool operator==(const NSRange&, const NSRange&) = default;
};

// Callable from any thread; independent of the process's locale. Text that is no valid UTF-8 is
// read as if each bad sequence were U+FFFD, except where a method says otherwise.
class MORVELUNE_API Text {
 public:
  virtual ~Text() = default;

  // The first occurrence of `pattern` in `text` without regard to case, as a range of `text`
  // itself, exact also where a change of case changes a character's length. Two letters are alike
  // when their lower case is; how a letter is read never depends on what stands beside it. A
  // platform whose own search folds case, as Apple's does, finds a little more ("s" in "ſ"). The
  // location is NSNotFound when there is none; an empty pattern is not found. On Linux the time
  // grows with the length of the two; on Apple's platforms it is that of their own search, which
  // promises none.
  [[nodiscard]] virtual NSRange rangeIgnoringCase(std::string_view pattern,
                                                  std::string_view text) const = 0;
  // The text with one letter in the place of all that are alike for rangeIgnoringCase(): two texts
  // fold to the same one when each is found in all of the other. ASCII letters are in lower case,
  // other ASCII stays, and nothing else folds to a character that is neither a letter nor a mark.
  // Each character is folded by itself.
  [[nodiscard]] virtual std::string caseFolded(std::string_view text) const = 0;
  // Whether the whole text matches a regular expression in ICU syntax. False for a bad expression,
  // and when matching exceeds the platform's bounds: on Linux about a second, or ICU's stack, which
  // some 250,000 digits can fill.
  [[nodiscard]] virtual bool matches(std::string_view text, std::string_view expression) const = 0;

  // Lenient reading of a number: leading white space skipped, an optional sign, digits with at most
  // one '.', an optional exponent; reading stops at the first character that does not fit. 0 when
  // there is no number. "inf", "nan" and hexadecimal are no numbers; overflow gives an infinity.
  [[nodiscard]] virtual double doubleValue(std::string_view text) const = 0;
  // Fixed notation with six decimals and '.', as "%lf" in the C locale.
  [[nodiscard]] virtual std::string fixedNotation(double number) const = 0;

  // Percent-encodes all but letters, digits and the characters that a query may hold (RFC 3986):
  // !$&'()*+,-./:;=?@_~
  [[nodiscard]] virtual std::string addingPercentEncodingForQuery(std::string_view text) const = 0;
  // Percent-encodes all but letters, digits and "-._~" (RFC 3986, unreserved).
  [[nodiscard]] virtual std::string addingPercentEscapes(std::string_view text) const = 0;
  // Replaces each percent escape by its byte. Empty when an escape is bad or cut, or when the
  // result is no valid UTF-8.
  [[nodiscard]] virtual std::optional<std::string> removingPercentEncoding(
      std::string_view text) const = 0;
};

}  // namespace morvelune
