#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "backends/linux/files/directory_watch.h"
#include "platform/foundation/run_loop.h"

namespace tarnix::linux_desktop {

// Tells of a file that it may have been made, written, replaced, removed or given other rights, by anyone.
// Used on the thread of its loop, which wakes up for nothing else than changes in the directories that are
// watched.
//
// That is the directory of the file, since a replacement is another file, and where the file is a symbolic
// link, the directory of its target too. While such a directory is missing, the nearest one above it is
// watched in its place. A directory further up that is renamed goes unnoticed.
//
// Without inotify it tells nothing, and says so by `isWatching`.
class FileWatch {
 public:
  // `changed` is called from the loop, and may change the file and end the watch.
  FileWatch(RunLoop& loop, const std::filesystem::path& file, std::function<void()> changed);
  FileWatch(const FileWatch&) = delete;
  FileWatch& operator=(const FileWatch&) = delete;

  bool isWatching() const { return directories_.descriptor() >= 0; }

 private:
  // What is watched, and which name matters there.
  struct Place {
    std::filesystem::path directory;
    std::string name;
    DirectoryWatch::Interest interest;
    friend bool operator==(const Place&, const Place&) = default;
  };

  static Place placeOf(const std::filesystem::path& file);
  std::vector<Place> places() const;
  void watch();
  bool watchPlaces();
  void look();

  RunLoop& loop_;
  std::filesystem::path file_;
  std::function<void()> changed_;
  std::vector<Place> watched_;
  DirectoryWatch directories_;
  RunLoop::Subscription events_;
};

}  // namespace tarnix::linux_desktop
