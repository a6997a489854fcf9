#include "platform/coregraphics/window_list.h"

#include "platform/platform.h"

namespace tarnix {

std::optional<std::vector<CGWindowDictionary>> CGWindowListCopyWindowInfo(CGWindowListOption options,
                                                                          CGWindowID relativeTo) {
  return Platform::installed().windowServer->copyWindowInfo(options, relativeTo);
}

}  // namespace tarnix
