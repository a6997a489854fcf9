#include "previewer/opened_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <utility>

namespace tarnix::previewer {
namespace {

constexpr int kOpenFlags = O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;

Reason reasonOf(int error) {
  switch (error) {
    case ENOENT:
    case ENOTDIR:
      return Reason::missing;
    case EACCES:
    case EPERM:
      return Reason::noPermission;
    case ELOOP:
      return Reason::linkLoop;
    case ENAMETOOLONG:
      return Reason::nameTooLong;
    default:
      return Reason::unreadable;
  }
}

bool isReadable(const struct stat& status) { return S_ISREG(status.st_mode) || S_ISDIR(status.st_mode); }

}  // namespace

// The place is held without opening what lies there: to open a device or a fifo does something to it. What is
// opened then is what was looked at, whatever becomes of the path.
std::variant<OpenedFile, Reason> OpenedFile::open(const std::string& path) {
  const int place = ::open(path.c_str(), O_PATH | O_CLOEXEC);
  if (place < 0) return reasonOf(errno);
  struct stat status {};
  const bool isKnown = fstat(place, &status) == 0;
  const bool isOpened = isKnown && isReadable(status);
  const int descriptor =
      isOpened ? ::open(("/proc/self/fd/" + std::to_string(place)).c_str(), kOpenFlags) : -1;
  const int error = errno;
  close(place);
  if (isKnown && !isOpened) return Reason::notAFile;
  if (descriptor < 0) return reasonOf(error);
  return OpenedFile(descriptor, status);
}

std::variant<OpenedFile, Reason> OpenedFile::adopt(int descriptor) {
  struct stat status {};
  if (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) return Reason::unreadable;
  return OpenedFile(descriptor, status);
}

OpenedFile::OpenedFile(OpenedFile&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)), status_(other.status_) {}

OpenedFile::~OpenedFile() {
  if (descriptor_ >= 0) close(descriptor_);
}

std::optional<std::int64_t> OpenedFile::created() const {
  struct statx extended {};
  const bool isKnown = statx(descriptor_, "", AT_EMPTY_PATH, STATX_BTIME, &extended) == 0 &&
                       (extended.stx_mask & STATX_BTIME) != 0;
  return isKnown ? std::optional<std::int64_t>(extended.stx_btime.tv_sec) : std::nullopt;
}

std::optional<std::string> OpenedFile::beginning(std::size_t most) const {
  std::string bytes(most, '\0');
  std::size_t size = 0;
  while (size < most) {
    const ssize_t got = pread(descriptor_, bytes.data() + size, most - size, static_cast<off_t>(size));
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return std::nullopt;
    if (got == 0) break;
    size += static_cast<std::size_t>(got);
  }
  bytes.resize(size);
  return bytes;
}

}  // namespace tarnix::previewer
