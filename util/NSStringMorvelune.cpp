#include "morvelune/NSStringMorvelune.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <span>

#include "morvelune/platform/ASCII.h"
#include "morvelune/platform/Platform.h"

namespace morvelune {
namespace {

std::string hexadecimal(std::span<const std::byte> bytes) {
  constexpr std::string_view digits = "0123456789abcdef";
  std::string text;
  for (const std::byte byte : bytes) {
    text += digits[std::to_integer<std::size_t>(byte >> 4)];
    text += digits[std::to_integer<std::size_t>(byte & std::byte{0x0F})];
  }
  return text;
}

std::string withoutBlanks(std::string_view text) {
  std::string kept(text);
  std::erase(kept, ' ');
  return kept;
}

double number(std::string_view text) {
  std::string plain = withoutBlanks(text);
  std::replace(plain.begin(), plain.end(), ',', '.');
  return Platform::current()->text->doubleValue(plain);
}

// ISO 4217: a code is three letters.
bool isCurrencyCode(std::string_view text) {
  return text.size() == 3 && std::all_of(text.begin(), text.end(), isASCIILetter);
}

// Whether the system is version 9 or later, the first that percent-encodes by a set of allowed
// characters.
bool hasModernPercentCoding() {
  return Platform::current()->device->isOperatingSystemAtLeastVersion({9, 0, 0});
}

}  // namespace

std::string mvl_MD5String(std::string_view receiver) {
  return hexadecimal(Platform::current()->digest->md5(receiver.substr(0, receiver.find('\0'))));
}

std::string mvl_SHA1String(std::string_view receiver) {
  return hexadecimal(Platform::current()->digest->sha1(receiver));
}

std::optional<std::string> mvl_currencyString(std::string_view receiver) {
  const std::string_view code = receiver.substr(0, 3);
  if (!isCurrencyCode(code)) return std::nullopt;
  // A fixed locale, so that every user gets the same answer.
  if (!Platform::current()->locale->currencyName("fr_FR", code)) return std::nullopt;
  return asciiUppercased(code);
}

bool mvl_isNumberIncrementation(std::string_view receiver) {
  // No text of fewer than two characters matches. The unescaped dot lets any one character
  // separate: deliberate.
  return Platform::current()->text->matches(withoutBlanks(receiver), R"(^(\+|\-)\d+(.|\,)?\d*$)");
}

std::string mvl_stringByIncrementingByStringNumber(std::string_view receiver,
                                                   std::optional<std::string_view> increment,
                                                   bool addPositiveSign) {
  if (!increment) return "";
  const double sum = number(receiver) + number(*increment);
  // Of opposite infinities. Its sign is the processor's choice, which "%lf" would show.
  if (std::isnan(sum)) return "nan";
  std::string text = sum > 0 && addPositiveSign ? "+" : "";
  return text += Platform::current()->text->fixedNotation(sum);
}

std::string mvl_URLEncodeString(std::string_view receiver) {
  const auto text = Platform::current()->text;
  return hasModernPercentCoding() ? text->addingPercentEncodingForQuery(receiver)
                                  : text->addingPercentEscapes(receiver);
}

std::optional<std::string> mvl_URLDecodeString(std::string_view receiver) {
  std::string encoded(receiver);
  if (!hasModernPercentCoding()) std::replace(encoded.begin(), encoded.end(), '+', ' ');
  return Platform::current()->text->removingPercentEncoding(encoded);
}

}  // namespace morvelune
