#include "morvelune/UIScreenMorvelune.h"

namespace morvelune {

std::ptrdiff_t mvl_currentOrientation(const std::shared_ptr<const Screen>& screen) {
  const auto origin = screen ? screen->fixedOriginInCurrentSpace() : std::nullopt;
  if (!origin) return 0;
  // A NaN counts as away from zero.
  const bool xIsZero = origin->x == 0;
  const bool yIsZero = origin->y == 0;
  if (xIsZero && yIsZero) return 1;
  if (!xIsZero && !yIsZero) return 2;
  return xIsZero ? 3 : 4;
}

}  // namespace morvelune
