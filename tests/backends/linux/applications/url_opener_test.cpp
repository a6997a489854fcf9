#include "backends/linux/applications/url_opener.h"

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <chrono>
#include <thread>

#include "backends/linux/temporary_directory.h"

namespace tarnix::linux_desktop {
namespace {

using namespace std::chrono_literals;

TEST(UrlOpener, givesTheAddressToTheFirstProgramThereIsAndWaitsForNone) {
  TemporaryDirectory directory;
  const auto told = directory / "told";
  writeFile(directory / "opener", "#!/bin/sh\necho \"$@\" >" + told.string() + "\nexec sleep 0.2\n");
  std::filesystem::permissions(directory / "opener", std::filesystem::perms::owner_all);
  {
    UrlOpener opener({{"no-such-program-anywhere"}, {(directory / "opener").string(), "open"}});
    const auto start = std::chrono::steady_clock::now();
    EXPECT_TRUE(opener.open("https://example.org/?a=$(x)&b='c'"));
    EXPECT_LT(std::chrono::steady_clock::now() - start, 150ms) << "the program takes longer";
    for (int i = 0; i < 500 && !contentsOf(told).ends_with('\n'); ++i) std::this_thread::sleep_for(10ms);
    EXPECT_EQ(contentsOf(told), "open https://example.org/?a=$(x)&b='c'\n") << "no shell reads it";
    for (int i = 0; i < 100 && opener.running() > 0; ++i) std::this_thread::sleep_for(10ms);
    EXPECT_EQ(opener.running(), 0U) << "no dead process is left behind";
  }
  EXPECT_FALSE(UrlOpener({{"no-such-program-anywhere"}}).open("https://example.org"));
}

}  // namespace
}  // namespace tarnix::linux_desktop
