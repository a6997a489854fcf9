#pragma once

#include "platform/foundation/file_manager.h"

namespace tarnix::linux_desktop {

// The file system. Relative paths and URLs of anything but files name nothing.
class FileManager final : public NSFileManager {
 public:
  bool removeItemAtURL(const URL& url) override;
};

}  // namespace tarnix::linux_desktop
