#include "morvelune/MVLCommonHelpers.h"

#include "morvelune/platform/Platform.h"

namespace morvelune {

std::string MVLCommonHelpers::countryCode() {
  return Platform::current()->locale->countryCode().value_or("");
}

}  // namespace morvelune
