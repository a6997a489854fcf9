#pragma once

#include <functional>
#include <vector>

#include "platform/foundation/string.h"

namespace tarnix::qt {

// Has the desktop's file manager show files, which are given by their URLs, selected in their folder. Waits
// for nobody; `failed` is called on the main thread where there is no file manager or bus, or it doesn't
// answer.
void askFileManager(const std::vector<String>& urls, std::function<void()> failed);

}  // namespace tarnix::qt
