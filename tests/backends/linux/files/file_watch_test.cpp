#include "backends/linux/files/file_watch.h"

#include <gmock/gmock.h>
#include <poll.h>

#include <chrono>

#include "backends/linux/poll_driver.h"
#include "backends/linux/temporary_directory.h"
#include "support/descriptor_limit.h"

namespace tarnix::linux_desktop {
namespace {

using namespace std::chrono_literals;
using std::filesystem::path;

class FileWatchTest : public ::testing::Test {
 protected:
  void watch(const path& file) {
    watch_ = std::make_unique<FileWatch>(loop_, file, [this] { ++calls_; });
  }
  // Whether the watch has told of `change` within a generous time.
  template <typename Change>
  bool isToldOf(Change change) {
    calls_ = 0;
    change();
    return driver_.runUntil([&] { return calls_ > 0; }, 5s);
  }
  void takeInAll() {
    while (isAwake()) loop_.descriptorReady(loop_.watchedDescriptors().at(0).id);
  }
  // Whether a driver would wake up.
  bool isAwake() const {
    if (loop_.watchedDescriptors().empty()) return false;
    pollfd entry{loop_.watchedDescriptors().at(0).descriptor, POLLIN, 0};
    return ::poll(&entry, 1, 0) > 0;
  }

  RunLoop loop_{steadyClock()};
  PollDriver driver_{loop_};
  TemporaryDirectory directory_;
  path file_ = directory_ / "a" / "b" / "file";
  int calls_ = 0;
  std::unique_ptr<FileWatch> watch_;
};

TEST_F(FileWatchTest, tellsOfEverythingThatMayChangeTheFile) {
  writeFile(file_, "first");
  watch(file_);
  EXPECT_TRUE(isToldOf([&] { writeFile(file_, "written in place"); }));
  const path other = directory_ / "other";
  writeFile(other, "replacement");
  EXPECT_TRUE(isToldOf([&] { std::filesystem::rename(other, file_); }));
  EXPECT_TRUE(isToldOf([&] { std::filesystem::permissions(file_, std::filesystem::perms::owner_read); }));
  EXPECT_TRUE(isToldOf([&] { std::filesystem::rename(file_, other); }));
  EXPECT_TRUE(isToldOf([&] { std::filesystem::create_hard_link(other, file_); }));
  EXPECT_TRUE(isToldOf([&] { std::filesystem::remove(file_); }));
}

TEST_F(FileWatchTest, findsTheFileWhoseDirectoriesAreMadeLater) {
  watch(file_);
  EXPECT_TRUE(isToldOf([&] { std::filesystem::create_directory(directory_ / "a"); }));
  EXPECT_TRUE(isToldOf([&] { std::filesystem::create_directory(directory_ / "a" / "b"); }));
  EXPECT_TRUE(isToldOf([&] { writeFile(file_, "at last"); }));
  for (int round = 0; round < 3; ++round) {
    EXPECT_TRUE(isToldOf([&] { std::filesystem::remove_all(directory_ / "a"); }));
    EXPECT_TRUE(isToldOf([&] { writeFile(file_, "anew, all at once"); }));
    takeInAll();
    EXPECT_TRUE(isToldOf([&] { writeFile(file_, "and again"); }));
    takeInAll();
  }
  std::filesystem::create_directories(directory_ / "c" / "b");
  EXPECT_TRUE(isToldOf([&] {
    std::filesystem::remove_all(directory_ / "a" / "b");
    std::filesystem::rename(directory_ / "c" / "b", directory_ / "a" / "b");
  }));
  takeInAll();
  EXPECT_TRUE(isToldOf([&] { writeFile(file_, "in the directory that took its place"); }));
}

TEST_F(FileWatchTest, findsADirectoryInThePlaceOfSomethingElse) {
  writeFile(directory_ / "a", "a file where a directory is wanted");
  watch(file_);
  std::filesystem::remove(directory_ / "a");
  EXPECT_TRUE(isToldOf([&] { writeFile(file_, "at last"); }));
}

TEST_F(FileWatchTest, followsLinksToWhereTheyLead) {
  const path first = directory_ / "dotfiles" / "first", second = directory_ / "elsewhere" / "second";
  std::filesystem::create_directories(file_.parent_path());
  std::filesystem::create_symlink("../../dotfiles/first", file_);
  watch(file_);
  EXPECT_TRUE(isToldOf([&] { std::filesystem::create_directory(directory_ / "dotfiles"); }));
  EXPECT_TRUE(isToldOf([&] { writeFile(first, "at the target"); }));
  EXPECT_TRUE(isToldOf([&] {
    writeFile(second, "");
    std::filesystem::create_symlink(second, directory_ / "link");
    std::filesystem::rename(directory_ / "link", file_);
  }));
  takeInAll();
  EXPECT_TRUE(isToldOf([&] { writeFile(second, "at the other target"); }));
  takeInAll();
  writeFile(first, "no longer");
  EXPECT_FALSE(isAwake());
  EXPECT_TRUE(isToldOf([&] {
    std::filesystem::remove(file_);
    std::filesystem::create_symlink(file_, file_);  // Leads nowhere, for ever.
  }));
}

TEST_F(FileWatchTest, isQuietWhileNothingOfItsOwnHappens) {
  writeFile(directory_ / "neighbour", "");
  watch(file_);
  writeFile(directory_ / "neighbour", "busy");
  std::filesystem::remove(directory_ / "neighbour");
  EXPECT_FALSE(isAwake()) << "on the way, only what arrives matters";
  writeFile(file_, "");
  takeInAll();
  calls_ = 0;
  writeFile(file_.string() + ".lock", "");
  takeInAll();
  EXPECT_EQ(calls_, 0) << "other files in the directory are no business of ours";
  EXPECT_FALSE(loop_.nextDue());
}

TEST_F(FileWatchTest, endsWithItsObjectAndMayBeEndedFromWithin) {
  watch(file_);
  watch_.reset();
  EXPECT_TRUE(loop_.watchedDescriptors().empty());
  watch_ = std::make_unique<FileWatch>(loop_, file_, [this] {
    ++calls_;
    watch_.reset();
  });
  EXPECT_TRUE(isToldOf([&] { writeFile(file_, ""); }));
  writeFile(file_, "again");
  EXPECT_FALSE(isAwake());
}

// As when the user's share of watches is used up.
TEST_F(FileWatchTest, doesNothingWhereTheSystemRefuses) {
  std::unique_ptr<FileWatch> refused;
  int calls = 0;
  {
    RunLoop& loop = loop_;
    const path& file = file_;
    const test::DescriptorLimit limit;
    refused = std::make_unique<FileWatch>(loop, file, [&calls] { ++calls; });
  }
  EXPECT_FALSE(refused->isWatching());
  EXPECT_TRUE(loop_.watchedDescriptors().empty());
  writeFile(file_, "unnoticed");
  driver_.runUntil([&] { return calls > 0; }, 10ms);
  EXPECT_EQ(calls, 0);
}

}  // namespace
}  // namespace tarnix::linux_desktop
