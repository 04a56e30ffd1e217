// A shared library with the static one inside.
#include "morvelune/MorveluneExtension.h"

__attribute__((visibility("default"))) std::string digestOfNothing() {
  return morvelune::mvl_MD5String("");
}
