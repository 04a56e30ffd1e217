// MVLCommonHelpers: small readers for the host application.
#pragma once

#include <string>

namespace morvelune {

// Stateless; callable from any thread.
class MVLCommonHelpers {
 public:
  MVLCommonHelpers() = delete;

  // The country code of the user's locale, such as "FR"; "" when it has none.
  [[nodiscard]] static std::string countryCode();
};

}  // namespace morvelune
