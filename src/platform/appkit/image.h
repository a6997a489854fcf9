#pragma once

#include <vector>

#include "platform/foundation/string.h"

namespace tarnix {

// An icon: what the desktop's icon theme may call it, or the absolute path of a picture; else that of the
// kind of the file at `path`.
struct NSImage {
  std::vector<String> names;
  String path;

  friend bool operator==(const NSImage&, const NSImage&) = default;
};

}  // namespace tarnix
