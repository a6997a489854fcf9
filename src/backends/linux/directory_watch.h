#pragma once

#include <filesystem>

#include "backends/linux/file_descriptor.h"

namespace tarnix::linux_desktop {

// Notices that something in a set of directories was added, removed, renamed, written or given other rights.
// Asks the kernel only when it is asked itself. Without inotify it never notices anything.
class DirectoryWatch {
 public:
  DirectoryWatch();

  // Adds the directory itself, without those in it. One that is not there is passed over.
  void add(const std::filesystem::path& directory);
  // Whether anything changed since the last call.
  bool takeChanges();
  // Ends all watching and forgets all changes.
  void clear();

 private:
  FileDescriptor events_;
};

}  // namespace tarnix::linux_desktop
