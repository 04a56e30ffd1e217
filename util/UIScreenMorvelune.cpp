#include "morvelune/UIScreenMorvelune.h"

namespace morvelune {

UIInterfaceOrientation mvl_currentOrientation(const std::shared_ptr<const Screen>& screen) {
  const auto origin = screen ? screen->fixedOriginInCurrentSpace() : std::nullopt;
  if (!origin) return UIInterfaceOrientationUnknown;
  // A NaN counts as away from zero.
  const bool xIsZero = origin->x == 0;
  const bool yIsZero = origin->y == 0;
  if (xIsZero && yIsZero) return UIInterfaceOrientationPortrait;
  if (!xIsZero && !yIsZero) return UIInterfaceOrientationPortraitUpsideDown;
  return xIsZero ? UIInterfaceOrientationLandscapeRight : UIInterfaceOrientationLandscapeLeft;
}

}  // namespace morvelune
