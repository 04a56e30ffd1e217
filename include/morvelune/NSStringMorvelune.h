// The operations that the library adds to the platform's strings, here free functions on UTF-8.
//
//   mvl_MD5String("");                                                    // "d41d8cd98f00..."
//   mvl_stringByIncrementingByStringNumber("10", "+2,5", true);           // "+12.500000"
//
// The results depend on the inputs and the platform in use only; callable from any thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "morvelune/platform/Export.h"

namespace morvelune {

// The MD5 digest (RFC 1321) as 32 lower-case hexadecimal digits. An embedded zero byte ends the
// input, unlike for mvl_SHA1String().
[[nodiscard]] MORVELUNE_API std::string mvl_MD5String(std::string_view receiver);

// The SHA-1 digest (FIPS 180-4) of all bytes as 40 lower-case hexadecimal digits.
[[nodiscard]] MORVELUNE_API std::string mvl_SHA1String(std::string_view receiver);

// The first three characters in upper case, if they are, in any case, a currency code (ISO 4217)
// that the locale data names; else empty. "EUR 12,90" gives "EUR".
[[nodiscard]] MORVELUNE_API std::optional<std::string> mvl_currencyString(
    std::string_view receiver);

// Whether the string is a signed increment, such as "+5" or "- 2,5": blanks aside, a sign, digits,
// perhaps one character of any kind as a separator, and perhaps more digits.
[[nodiscard]] MORVELUNE_API bool mvl_isNumberIncrementation(std::string_view receiver);

// The sum of the numbers that both strings begin with, blanks aside and with "," read as ".", in
// fixed notation with six decimals and "."; a string that begins with no number counts as 0. A
// positive sum gets a "+" when `addPositiveSign` is set. "" when there is no increment; "inf",
// "-inf" or "nan" when the sum is no finite number.
[[nodiscard]] MORVELUNE_API std::string mvl_stringByIncrementingByStringNumber(
    std::string_view receiver, std::optional<std::string_view> increment, bool addPositiveSign);

// Percent-encoded. From version 9 of the system on, all but what a query may hold (RFC 3986) is
// encoded, so "&", "=", "+", "/" and "?" stay; before, all but letters, digits and "-._~".
[[nodiscard]] MORVELUNE_API std::string mvl_URLEncodeString(std::string_view receiver);

// With its percent escapes decoded as UTF-8; empty when an escape is malformed or they form no
// valid UTF-8. From version 9 of the system on "+" stays "+"; before, it becomes a blank.
[[nodiscard]] MORVELUNE_API std::optional<std::string> mvl_URLDecodeString(
    std::string_view receiver);

}  // namespace morvelune
