#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace tarnix::linux_desktop {

// Owns an open file; empty when opening failed.
class FileDescriptor {
 public:
  FileDescriptor() = default;
  explicit FileDescriptor(int descriptor) : descriptor_(descriptor) {}
  FileDescriptor(FileDescriptor&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    return *this;
  }
  ~FileDescriptor();

  int get() const { return descriptor_; }
  explicit operator bool() const { return descriptor_ >= 0; }

 private:
  int descriptor_ = -1;
};

// Reads to the end, but no more than `limit` bytes. Absent on an error, which `errno` then names.
std::optional<std::string> readUpTo(const FileDescriptor& file, std::size_t limit);

// Opens a regular file for reading, whatever links lead to it, and reads it. Absent when there is no such
// file, when it is no regular file, when it cannot be read and when it is longer than `limit`.
std::optional<std::string> readSmallFile(const std::string& path, std::size_t limit);

// False on an error, which `errno` then names. A part may have been written.
[[nodiscard]] bool writeAll(const FileDescriptor& file, std::string_view bytes);

}  // namespace tarnix::linux_desktop
