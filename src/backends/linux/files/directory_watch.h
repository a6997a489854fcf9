#pragma once

#include <filesystem>
#include <set>
#include <string>

#include "backends/linux/files/file_descriptor.h"

namespace tarnix::linux_desktop {

// Notices that something in a set of directories was added, removed, renamed, written or given other rights.
// Asks the kernel only when it is asked itself. Without inotify it never notices anything.
class DirectoryWatch {
 public:
  // `arrivals`: what is added or renamed to a name there, and the end of the directory itself.
  enum class Interest { everything, arrivals };

  struct Changes {
    std::set<std::string> names;  // What changed, in whichever of the directories.
    // A directory itself changed, went away or was renamed, or too much happened to be told.
    bool isIncomplete = false;

    explicit operator bool() const { return isIncomplete || !names.empty(); }
  };

  DirectoryWatch();

  // Adds the directory itself, without those in it. One that is not there is passed over: false.
  bool add(const std::filesystem::path& directory, Interest interest = Interest::everything);
  // What changed since the last call.
  Changes takeChanges();
  // Ends all watching and forgets all changes.
  void clear();
  // Can be read while there are changes to take. Negative without inotify. Another one after `clear`.
  int descriptor() const { return events_.get(); }

 private:
  FileDescriptor events_;
};

}  // namespace tarnix::linux_desktop
