#include <gmock/gmock.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <functional>
#include <random>
#include <thread>

#include "backends/linux/files/defaults_file.h"
#include "backends/linux/files/file_size_limit.h"
#include "backends/linux/temporary_directory.h"

namespace tarnix::linux_desktop {
namespace {

using namespace std::chrono_literals;

// A copy of this process that runs `body` and nothing behind it.
class Child {
 public:
  explicit Child(const std::function<void()>& body) : pid_(::fork()) {
    if (pid_ != 0) return;
    body();
    ::_exit(0);
  }
  void kill() const { ::kill(pid_, SIGKILL); }
  int wait() const {
    int status = 0;
    EXPECT_EQ(::waitpid(pid_, &status, 0), pid_);
    return status;
  }

 private:
  pid_t pid_;
};

void awaitBytes(int descriptor, int count) {
  for (char byte; count > 0; --count) ASSERT_EQ(::read(descriptor, &byte, 1), 1);
}

class DefaultsFileFaultsTest : public ::testing::Test {
 protected:
  TemporaryDirectory directory_;
  std::filesystem::path file_ = directory_ / "settings.plist";
};

// Text that fills several disk blocks, so that a partial write would show.
PropertyList generation(std::int64_t number) {
  return {PropertyList::Array{{number}, {String(std::string(20'000, 'x'))}, {number}}};
}

TEST_F(DefaultsFileFaultsTest, aProcessKilledAtAnyMomentLeavesTheOldOrTheNew) {
  std::mt19937 random(1);
  std::int64_t newest = 0;
  const auto end = std::chrono::steady_clock::now() + 1s;
  do {
    int progress[2];
    ASSERT_EQ(::pipe(progress), 0);
    const Child child([&] {
      FileDefaultsStorage storage(file_);
      for (std::int64_t number = newest + 1; ::write(progress[1], "x", 1) == 1; ++number) {
        storage.setObject("generation", generation(number));
      }
    });
    awaitBytes(progress[0], 2);  // The first generation is complete.
    std::this_thread::sleep_for(std::chrono::microseconds(random() % 15'000));
    child.kill();
    child.wait();
    ::close(progress[0]), ::close(progress[1]);
    std::vector<StorageFailure> failures;
    const FileDefaultsStorage storage(file_,
                                      [&](const StorageFailure& failure) { failures.push_back(failure); });
    ASSERT_THAT(failures, testing::IsEmpty());
    const std::optional<PropertyList> found = storage.object("generation");
    ASSERT_TRUE(found);
    const std::int64_t number = *found->as<PropertyList::Array>()->front().as<std::int64_t>();
    ASSERT_EQ(found, generation(number));
    ASSERT_GT(number, newest);
    newest = number;
  } while (std::chrono::steady_clock::now() < end);
}

TEST_F(DefaultsFileFaultsTest, twoProcessesThatWriteAtTheSameTimeLoseNothing) {
  constexpr int kChanges = 50;
  const auto writeAllOf = [&](const std::string& prefix) {
    FileDefaultsStorage storage(file_);
    for (int i = 0; i < kChanges; ++i) storage.setObject(prefix + std::to_string(i), {std::int64_t{i}});
  };
  const Child first([&] { writeAllOf("first"); }), second([&] { writeAllOf("second"); });
  EXPECT_EQ(first.wait(), 0);
  EXPECT_EQ(second.wait(), 0);
  EXPECT_THAT(FileDefaultsStorage(file_).contents(), testing::SizeIs(2 * kChanges));
}

TEST_F(DefaultsFileFaultsTest, aFullDiskKeepsTheOldFileAndTheNewValue) {
  std::vector<StorageFailure> failures;
  FileDefaultsStorage storage(file_, [&](const StorageFailure& failure) { failures.push_back(failure); });
  storage.setObject("generation", generation(1));
  const std::string before = contentsOf(file_);
  {
    const FileSizeLimit limit(8000);
    storage.setObject("generation", generation(2));
    storage.setObject("other", {true});
  }
  EXPECT_THAT(failures, testing::ElementsAre(StorageFailure{StorageFailure::Kind::noSpace, EFBIG}));
  EXPECT_EQ(contentsOf(file_), before);
  EXPECT_EQ(storage.object("generation"), generation(2));
  EXPECT_FALSE(std::filesystem::exists(file_.string() + ".new"));
  storage.setObject("third", {true});
  EXPECT_EQ(FileDefaultsStorage(file_).contents(), storage.contents());
}

// For the superuser nothing is read-only, so that this is a matter for a child that has become somebody else.
bool becomeOrdinaryUser(const std::filesystem::path& home) {
  constexpr uid_t kNobody = 65534;
  if (::geteuid() != 0) return true;
  return ::chown(home.c_str(), kNobody, kNobody) == 0 && ::setresgid(kNobody, kNobody, kNobody) == 0 &&
         ::setresuid(kNobody, kNobody, kNobody) == 0;
}

TEST_F(DefaultsFileFaultsTest, aReadOnlyDirectoryKeepsTheOldFileAndTheNewValues) {
  constexpr auto kReadOnly = std::filesystem::perms::owner_read | std::filesystem::perms::owner_exec;
  const auto fails = [](int at) { ::_exit(at); };
  const Child child([&] {
    if (!becomeOrdinaryUser(directory_.path())) fails(1);
    std::vector<StorageFailure> failures;
    FileDefaultsStorage storage(file_, [&](const StorageFailure& failure) { failures.push_back(failure); });
    storage.setObject("old", generation(1));
    const std::string before = contentsOf(file_);
    std::filesystem::permissions(directory_.path(), kReadOnly);
    storage.setObject("old", generation(2));
    storage.setObject("new", {true});
    storage.takeForeignChanges();
    if (failures != std::vector{StorageFailure{StorageFailure::Kind::unwritable, EACCES}}) fails(2);
    if (contentsOf(file_) != before || before.empty()) fails(3);
    if (storage.object("old") != generation(2) || storage.object("new") != PropertyList{true}) fails(4);
    std::filesystem::permissions(directory_.path(), std::filesystem::perms::owner_all);
    storage.setObject("last", {true});
    const FileDefaultsStorage next(file_);
    if (next.contents().size() != 3 || next.contents() != storage.contents()) fails(5);
  });
  EXPECT_EQ(child.wait(), 0) << "the high byte says where";
}

}  // namespace
}  // namespace tarnix::linux_desktop
