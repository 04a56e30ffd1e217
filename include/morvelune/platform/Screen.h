// Screen: the geometry of a screen, in the platform's logical units (points).
#pragma once

#include <cstddef>
#include <optional>

#include "morvelune/platform/Export.h"

namespace morvelune {

struct Point {
  double x = 0;
  double y = 0;
};

struct Size {
  double width = 0;
  double height = 0;
};

// How an interface is held; the codes are the platform's own.
enum UIInterfaceOrientation : std::ptrdiff_t {
  UIInterfaceOrientationUnknown = 0,
  UIInterfaceOrientationPortrait = 1,
  UIInterfaceOrientationPortraitUpsideDown = 2,
  UIInterfaceOrientationLandscapeRight = 3,
  UIInterfaceOrientationLandscapeLeft = 4,
};

// Callable from any thread.
class MORVELUNE_API Screen {
 public:
  virtual ~Screen() = default;

  // The size of the screen's bounds as it is held now.
  [[nodiscard]] virtual Size bounds() const = 0;
  // The origin of the fixed, portrait-locked coordinate space seen in the current one; empty when
  // the screen cannot tell.
  [[nodiscard]] virtual std::optional<Point> fixedOriginInCurrentSpace() const = 0;
};

}  // namespace morvelune
