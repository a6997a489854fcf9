#include "backends/linux/files/directory_watch.h"

#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <string_view>

namespace tarnix::linux_desktop {
namespace {

// Masks add up where the same directory is added twice.
constexpr std::uint32_t kArrivals =
    IN_CREATE | IN_MOVED_TO | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR | IN_MASK_ADD;
constexpr std::uint32_t kEverything = kArrivals | IN_MOVED_FROM | IN_DELETE | IN_CLOSE_WRITE | IN_ATTRIB;

// `events` is what one read gave: each event is followed by its name, which zeros fill up.
void append(DirectoryWatch::Changes& changes, std::string_view events) {
  while (!events.empty()) {
    inotify_event event;
    events.copy(reinterpret_cast<char*>(&event), sizeof event);
    const std::string name = events.substr(sizeof event, event.len).data();
    if (event.len > 0) {
      changes.names.insert(name);
    } else {
      changes.isIncomplete = true;
    }
    events.remove_prefix(sizeof event + event.len);
  }
}

}  // namespace

DirectoryWatch::DirectoryWatch() { clear(); }

bool DirectoryWatch::add(const std::filesystem::path& directory, Interest interest) {
  if (!events_) return true;
  const std::uint32_t mask = interest == Interest::everything ? kEverything : kArrivals;
  const bool isWatched = ::inotify_add_watch(events_.get(), directory.c_str(), mask) >= 0;
  return isWatched || (errno != ENOENT && errno != ENOTDIR);
}

DirectoryWatch::Changes DirectoryWatch::takeChanges() {
  std::array<char, 16 * 1024> buffer;
  Changes changes;
  while (events_) {
    const ssize_t size = ::read(events_.get(), buffer.data(), buffer.size());
    if (size < 0 && errno == EINTR) continue;
    if (size <= 0) break;
    append(changes, {buffer.data(), static_cast<std::size_t>(size)});
  }
  return changes;
}

void DirectoryWatch::clear() { events_ = FileDescriptor(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)); }

}  // namespace tarnix::linux_desktop
