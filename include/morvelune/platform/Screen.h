// Screen: the geometry of a screen, in the platform's logical units (points).
#pragma once

#include <optional>

namespace morvelune {

struct Point {
  double x = 0;
  double y = 0;
};

struct Size {
  double width = 0;
  double height = 0;
};

// Callable from any thread.
class Screen {
 public:
  virtual ~Screen() = default;

  // The size of the screen's bounds as it is held now.
  [[nodiscard]] virtual Size bounds() const = 0;
  // The origin of the fixed, portrait-locked coordinate space seen in the current one; empty when
  // the screen cannot tell.
  [[nodiscard]] virtual std::optional<Point> fixedOriginInCurrentSpace() const = 0;
};

}  // namespace morvelune
