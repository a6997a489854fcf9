#pragma once

#include "platform/appkit/workspace.h"
#include "platform/swiftui/elements.h"

namespace tarnix {

// The icon of a file or an application, in the size that the caller sets.
struct URLIcon {
  URL url;

  View body() const { return Picture(NSWorkspace::sharedWorkspace().iconForFile(url.path())); }
};

}  // namespace tarnix
