// Locale: the user's country and languages, and names of currencies.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "morvelune/platform/Export.h"

namespace morvelune {

// Callable from any thread. Each call asks the platform again; a platform may fix the process's
// locale when it is first asked, as ICU does on Linux.
class MORVELUNE_API Locale {
 public:
  virtual ~Locale() = default;

  // The region code of the user's locale, such as "FR"; empty when it has none.
  [[nodiscard]] virtual std::optional<std::string> countryCode() const = 0;
  // The user's languages, most preferred first, as hyphenated tags such as "fr-FR"; empty when the
  // list is unavailable.
  [[nodiscard]] virtual std::optional<std::vector<std::string>> preferredLanguages() const = 0;
  // The name of a currency in the language of `localeIdentifier` ("fr_FR"), such as "euro" for
  // "EUR". The code may be in any case. Empty for an unknown code and for one that is not three
  // UTF-16 units long.
  [[nodiscard]] virtual std::optional<std::string> currencyName(
      std::string_view localeIdentifier, std::string_view currencyCode) const = 0;
};

}  // namespace morvelune
