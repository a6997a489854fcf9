#pragma once

#include "platform/coregraphics/cg_float.h"
#include "platform/foundation/string.h"

namespace tarnix {

// A font by its family, size and traits. No family stands for the system's own, and a size of 0 for its size.
struct NSFont {
  String familyName;
  CGFloat pointSize = 0;
  bool isBold = false;
  bool isItalic = false;

  // The system's font for the content of controls; a size of 0 is its default size.
  static NSFont controlContentFontOfSize(CGFloat size) { return {{}, size}; }

  friend bool operator==(const NSFont&, const NSFont&) = default;
};

}  // namespace tarnix
