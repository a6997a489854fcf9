#pragma once

#include <memory>

#include "platform/foundation/url.h"

namespace tarnix {

// What is done to files. Any thread.
class NSFileManager {
 public:
  virtual ~NSFileManager() = default;
  // Of the installed platform; to be asked for on the main thread.
  static std::shared_ptr<NSFileManager> defaultManager();
  // Removes the file, the symbolic link itself, or the directory with all that is in it. False when nothing
  // is there, or not all of it could be removed. May wait for the disk.
  virtual bool removeItemAtURL(const URL& url) = 0;
};

}  // namespace tarnix
