#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "backends/linux/files/file_descriptor.h"
#include "platform/foundation/result.h"

namespace tarnix::linux_desktop {

// Why a file could not be kept in step with memory.
struct StorageFailure {
  enum class Kind {
    unreachable,   // The directory is not there and cannot be made, or links lead nowhere.
    foreignOwner,  // The file or its directory belongs to another user.
    notAFile,      // A directory, pipe or device lies in the file's place.
    unreadable,
    busy,     // Another process held the lock for too long.
    noSpace,  // The disk or the user's share of it is full.
    unwritable,
    damaged,          // The contents were none of the format and were set aside.
    unrepresentable,  // The format has no form for a value.
    tooLarge,         // A value does not fit the format's limit.
    unwatched,        // The system watches no file for us, so that what others change goes unnoticed.
  };
  Kind kind;
  int systemError = 0;  // As in `errno`; 0 when the system did not refuse anything.

  friend bool operator==(const StorageFailure&, const StorageFailure&) = default;
};

template <typename Value>
using StorageResult = Result<Value, StorageFailure>;

// The contents of a file that several processes replace as a whole; absent when there is no file. Longer
// files are cut behind `limit`. Symbolic links are followed. Neither waits for the lock nor makes anything.
StorageResult<std::optional<std::string>> readSharedFile(const std::filesystem::path& file,
                                                         std::size_t limit);

// The right to replace such a file, for as long as the object lives. Processes take turns by a lock on a file
// of its own beside it (`NAME.lock`), which stays.
class SharedFileTurn {
 public:
  // Makes the directory (mode 0700) where it is missing, and waits at most one second for other processes.
  // When `file` is a symbolic link, all of this happens at its target, and the link stays.
  static StorageResult<SharedFileTurn> begin(const std::filesystem::path& file);

  StorageResult<std::optional<std::string>> read(std::size_t limit) const;
  // Atomic: whatever happens, the file holds the old contents or all of the new ones. Its mode becomes 0600.
  // Absent when all went well.
  [[nodiscard]] std::optional<StorageFailure> replace(std::string_view contents) const;
  // Renames the file to `NAME.damaged-N`, with the first free N from 1 on. Absent when all went well.
  [[nodiscard]] std::optional<StorageFailure> setAside() const;

 private:
  SharedFileTurn(FileDescriptor directory, FileDescriptor lock, std::string name)
      : directory_(std::move(directory)), lock_(std::move(lock)), name_(std::move(name)) {}
  [[nodiscard]] std::optional<StorageFailure> writeNewFile(std::string_view contents) const;
  std::string newName() const { return name_ + ".new"; }

  FileDescriptor directory_;
  FileDescriptor lock_;
  std::string name_;
};

}  // namespace tarnix::linux_desktop
