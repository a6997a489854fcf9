#include "backends/linux/directory_watch.h"

#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <cerrno>

namespace tarnix::linux_desktop {

DirectoryWatch::DirectoryWatch() { clear(); }

void DirectoryWatch::add(const std::filesystem::path& directory) {
  constexpr std::uint32_t kEvents = IN_CREATE | IN_DELETE | IN_MOVE | IN_CLOSE_WRITE | IN_ATTRIB |
                                    IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;
  if (events_) ::inotify_add_watch(events_.get(), directory.c_str(), kEvents);
}

bool DirectoryWatch::takeChanges() {
  alignas(inotify_event) std::array<char, 16 * 1024> buffer;
  bool hasChanged = false;
  while (events_) {
    const ssize_t size = ::read(events_.get(), buffer.data(), buffer.size());
    if (size < 0 && errno == EINTR) continue;
    if (size <= 0) break;
    hasChanged = true;
  }
  return hasChanged;
}

void DirectoryWatch::clear() { events_ = FileDescriptor(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)); }

}  // namespace tarnix::linux_desktop
