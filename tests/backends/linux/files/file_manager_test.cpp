#include "backends/linux/files/file_manager.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "backends/linux/temporary_directory.h"
#include "backends/linux/utility_queue.h"

namespace tarnix::linux_desktop {
namespace {

namespace fs = std::filesystem;

TEST(FileManager, removesWhatTheURLNamesAndNothingBehindALink) {
  const TemporaryDirectory folder;
  writeFile(folder / "kept/file", "kept");
  writeFile(folder / "gone/deep/file", "gone");
  fs::create_symlink(folder / "kept", folder / "gone/link");
  fs::create_symlink(folder / "kept/file", folder / "link");
  FileManager files;
  EXPECT_TRUE(files.removeItemAtURL(URL((folder / "gone").string())));
  EXPECT_FALSE(fs::exists(folder / "gone"));
  EXPECT_TRUE(files.removeItemAtURL(URL((folder / "link").string())));
  EXPECT_EQ(contentsOf(folder / "kept/file"), "kept");
  EXPECT_FALSE(files.removeItemAtURL(URL((folder / "gone").string()))) << "already gone";
  EXPECT_FALSE(files.removeItemAtURL(URL("")));
  EXPECT_FALSE(files.removeItemAtURL(*URL::fromString("smb://host" + (folder / "kept").string())));
  EXPECT_EQ(contentsOf(folder / "kept/file"), "kept");
}

TEST(UtilityQueue, doesAllThatItWasGivenInOrderBesideItsCaller) {
  const auto caller = std::this_thread::get_id();
  std::vector<int> done;
  std::thread::id worker;
  {
    UtilityQueue queue;
    for (int i = 0; i < 100; ++i) {
      queue.async([&, i] {
        done.push_back(i);
        worker = std::this_thread::get_id();
      });
    }
  }
  ASSERT_EQ(done.size(), 100U) << "the end waits for them";
  for (int i = 0; i < 100; ++i) EXPECT_EQ(done[static_cast<std::size_t>(i)], i);
  EXPECT_NE(worker, caller);
}

}  // namespace
}  // namespace tarnix::linux_desktop
