#include "backends/linux/files/shared_file.h"

#include <fcntl.h>
#include <stdio.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <system_error>
#include <thread>

namespace tarnix::linux_desktop {
namespace {

using std::filesystem::path;
using Kind = StorageFailure::Kind;

constexpr mode_t kPrivateFile = 0600;
constexpr mode_t kPrivateDirectory = 0700;
constexpr auto kLockLimit = std::chrono::seconds(1);
constexpr auto kLockRetry = std::chrono::microseconds(500);
constexpr int kSetAsideLimit = 1000;

StorageFailure failureNow(Kind kind) { return {kind, errno}; }

StorageFailure writeFailureNow() {
  const bool isFull = errno == ENOSPC || errno == EDQUOT || errno == EFBIG;
  return failureNow(isFull ? Kind::noSpace : Kind::unwritable);
}

// Follows the links that the last component stands for, also to a file that does not exist yet.
StorageResult<path> linkTarget(path file) {
  constexpr int kLinkLimit = 40;
  for (int i = 0; i < kLinkLimit; ++i) {
    std::error_code error;
    const path target = std::filesystem::read_symlink(file, error);
    if (error) return file;
    file = file.parent_path() / target;  // An absolute target replaces the whole.
  }
  return StorageFailure{Kind::unreachable, ELOOP};
}

bool makeDirectory(const path& directory) {
  if (::mkdir(directory.c_str(), kPrivateDirectory) == 0 || errno == EEXIST) return true;
  if (errno != ENOENT || !directory.has_relative_path()) return false;
  return makeDirectory(directory.parent_path()) && ::mkdir(directory.c_str(), kPrivateDirectory) == 0;
}

StorageResult<FileDescriptor> openDirectory(const path& directory) {
  FileDescriptor descriptor;
  if (makeDirectory(directory)) {
    descriptor = FileDescriptor(::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  }
  if (!descriptor) return failureNow(Kind::unreachable);
  return descriptor;
}

// Refuses what is no regular file and what belongs to somebody else.
std::optional<StorageFailure> objectionTo(const FileDescriptor& file, mode_t type) {
  struct stat status {};
  if (::fstat(file.get(), &status) != 0) return failureNow(Kind::unreadable);
  if ((status.st_mode & S_IFMT) != type) return StorageFailure{Kind::notAFile};
  if (status.st_uid != ::geteuid()) return StorageFailure{Kind::foreignOwner};
  return std::nullopt;
}

StorageResult<std::optional<std::string>> readRegularFile(int directory, const std::string& name,
                                                          std::size_t limit) {
  // Without blocking, should the file be a pipe that nobody writes to.
  constexpr int kFlags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
  const FileDescriptor file(::openat(directory, name.c_str(), kFlags));
  if (!file && errno == ENOENT) return std::optional<std::string>();
  if (!file) return failureNow(Kind::unreadable);
  if (const auto objection = objectionTo(file, S_IFREG)) return *objection;
  std::optional<std::string> contents = readUpTo(file, limit);
  if (!contents) return failureNow(Kind::unreadable);
  return contents;
}

// Waits by asking again, because a wait in the kernel has no deadline.
bool lockInTime(const FileDescriptor& lock) {
  const auto deadline = std::chrono::steady_clock::now() + kLockLimit;
  while (::flock(lock.get(), LOCK_EX | LOCK_NB) != 0) {
    const bool mayRetry = errno == EWOULDBLOCK || errno == EINTR;
    if (!mayRetry || std::chrono::steady_clock::now() > deadline) return false;
    std::this_thread::sleep_for(kLockRetry);
  }
  return true;
}

StorageResult<FileDescriptor> openLock(const FileDescriptor& directory, const std::string& name) {
  constexpr int kFlags = O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
  FileDescriptor lock(::openat(directory.get(), name.c_str(), kFlags, kPrivateFile));
  if (!lock) return writeFailureNow();
  if (const auto objection = objectionTo(lock, S_IFREG)) return *objection;
  if (!lockInTime(lock)) return failureNow(Kind::busy);
  return lock;
}

bool synchronize(const FileDescriptor& file) {
  while (::fsync(file.get()) != 0) {
    if (errno != EINTR) return false;
  }
  return true;
}

}  // namespace

StorageResult<std::optional<std::string>> readSharedFile(const path& file, std::size_t limit) {
  StorageResult<path> target = linkTarget(file);
  if (!target) return target.error();
  return readRegularFile(AT_FDCWD, target->string(), limit);
}

StorageResult<SharedFileTurn> SharedFileTurn::begin(const path& file) {
  StorageResult<path> target = linkTarget(file);
  if (!target) return target.error();
  StorageResult<FileDescriptor> directory = openDirectory(target->parent_path());
  if (!directory) return directory.error();
  if (const auto objection = objectionTo(*directory, S_IFDIR)) return *objection;
  StorageResult<FileDescriptor> lock = openLock(*directory, target->filename().string() + ".lock");
  if (!lock) return lock.error();
  return SharedFileTurn(std::move(*directory), std::move(*lock), target->filename().string());
}

StorageResult<std::optional<std::string>> SharedFileTurn::read(std::size_t limit) const {
  return readRegularFile(directory_.get(), name_, limit);
}

// A new file that was left behind by a process that died is in nobody's use, since this one holds the lock.
std::optional<StorageFailure> SharedFileTurn::replace(std::string_view contents) const {
  ::unlinkat(directory_.get(), newName().c_str(), 0);
  std::optional<StorageFailure> failure = writeNewFile(contents);
  if (!failure && ::renameat(directory_.get(), newName().c_str(), directory_.get(), name_.c_str()) != 0) {
    failure = writeFailureNow();
  }
  if (failure) {
    ::unlinkat(directory_.get(), newName().c_str(), 0);
    return failure;
  }
  return synchronize(directory_) ? std::nullopt : std::optional(writeFailureNow());
}

std::optional<StorageFailure> SharedFileTurn::writeNewFile(std::string_view contents) const {
  constexpr int kFlags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
  const FileDescriptor file(::openat(directory_.get(), newName().c_str(), kFlags, kPrivateFile));
  const bool isWritten = file && ::fchmod(file.get(), kPrivateFile) == 0 && writeAll(file, contents);
  return isWritten && synchronize(file) ? std::nullopt : std::optional(writeFailureNow());
}

std::optional<StorageFailure> SharedFileTurn::setAside() const {
  for (int i = 1; i <= kSetAsideLimit; ++i) {
    const std::string name = name_ + ".damaged-" + std::to_string(i);
    const int directory = directory_.get();
    if (::renameat2(directory, name_.c_str(), directory, name.c_str(), RENAME_NOREPLACE) == 0)
      return std::nullopt;
    if (errno != EEXIST) break;
  }
  return writeFailureNow();
}

}  // namespace tarnix::linux_desktop
