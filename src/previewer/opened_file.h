#pragma once

#include <sys/stat.h>

#include <cstdint>
#include <optional>
#include <string>
#include <variant>

#include "previewer/protocol/messages.h"

namespace tarnix::previewer {

using namespace previewing;

// What is previewed, opened once; all that is read of it is read through this descriptor.
class OpenedFile {
 public:
  // Regular files and folders only: nothing else is opened, not even to look.
  static std::variant<OpenedFile, Reason> open(const std::string& path);
  // Bytes that were handed over.
  static std::variant<OpenedFile, Reason> adopt(int descriptor);

  OpenedFile(OpenedFile&& other) noexcept;
  OpenedFile& operator=(OpenedFile&&) = delete;
  ~OpenedFile();

  int descriptor() const { return descriptor_; }
  bool isFolder() const { return S_ISDIR(status_.st_mode); }
  std::uint64_t size() const { return static_cast<std::uint64_t>(status_.st_size); }
  std::int64_t modified() const { return status_.st_mtim.tv_sec; }
  // Absent where the file system doesn't know.
  std::optional<std::int64_t> created() const;
  // The first bytes, at most so many; absent when reading fails.
  std::optional<std::string> beginning(std::size_t most) const;

 private:
  OpenedFile(int descriptor, const struct stat& status) : descriptor_(descriptor), status_(status) {}

  int descriptor_;
  struct stat status_;
};

}  // namespace tarnix::previewer
