// Locale: the user's country and languages, and names of currencies.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace morvelune {

// Callable from any thread. Nothing is cached: each call reads the locale again.
class Locale {
 public:
  virtual ~Locale() = default;

  // The region code of the user's locale, such as "FR"; empty when it has none.
  [[nodiscard]] virtual std::optional<std::string> countryCode() const = 0;
  // The user's languages, most preferred first, as hyphenated tags such as "fr-FR"; empty when the
  // list is unavailable.
  [[nodiscard]] virtual std::optional<std::vector<std::string>> preferredLanguages() const = 0;
  // The name of a currency in the language of `localeIdentifier` ("fr_FR"), such as "euro" for
  // "EUR", matched without regard to case; empty when the locale data names no such code. A code
  // has exactly three UTF-16 units.
  [[nodiscard]] virtual std::optional<std::string> currencyName(
      std::string_view localeIdentifier, std::string_view currencyCode) const = 0;
};

}  // namespace morvelune
