#pragma once

namespace tarnix {

// A rectangle in points, origin at the top left of the primary screen.
struct CGRect {
  double x = 0;
  double y = 0;
  double width = 0;
  double height = 0;

  friend bool operator==(const CGRect&, const CGRect&) = default;
};

}  // namespace tarnix
