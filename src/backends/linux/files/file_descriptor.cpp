#include "backends/linux/files/file_descriptor.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace tarnix::linux_desktop {

FileDescriptor::~FileDescriptor() {
  if (descriptor_ >= 0) ::close(descriptor_);
}

std::optional<std::string> readUpTo(const FileDescriptor& file, std::size_t limit) {
  constexpr std::size_t kPiece = 16 * 1024;
  std::string bytes;
  while (bytes.size() < limit) {
    const std::size_t size = bytes.size();
    bytes.resize(std::min(limit, size + kPiece));
    const ssize_t count = ::read(file.get(), bytes.data() + size, bytes.size() - size);
    bytes.resize(size + static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    if (count == 0) break;
    if (count < 0 && errno != EINTR) return std::nullopt;
  }
  return bytes;
}

std::optional<std::string> readSmallFile(const std::string& path, std::size_t limit) {
  const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  struct stat status {};
  if (!file || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
  std::optional<std::string> bytes = readUpTo(file, limit + 1);
  if (!bytes || bytes->size() > limit) return std::nullopt;
  return bytes;
}

bool writeAll(const FileDescriptor& file, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = ::write(file.get(), bytes.data(), bytes.size());
    if (count < 0 && errno != EINTR) return false;
    bytes.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
  }
  return true;
}

}  // namespace tarnix::linux_desktop
