#include "app/memory_return.h"

#include <gtest/gtest.h>
#include <malloc.h>

#include <chrono>

#include "backends/simulated/desktop.h"

namespace {

int returns = 0;

}  // namespace

// Stands in for the one of the library.
int malloc_trim(std::size_t) noexcept { return ++returns; }

namespace tarnix {
namespace {

using namespace std::chrono_literals;

TEST(MemoryReturn, happensOnceWhenTheListHasBecomeMuchSmaller) {
  SimulatedDesktop desktop;
  const ContentView view = desktop.show<ContentView>();
  const MemoryReturn memoryReturn(view, desktop.window().graph(), desktop.runLoop());
  for (int copy = 0; copy < 4; ++copy) {
    desktop.app("editor").copies("text");
    desktop.advance(300ms);
  }
  const ClipHistory clips = *view.clipboard;
  ASSERT_EQ(clips.size(), 4U);
  for (const auto& [left, expected] : {std::pair{2, 0}, {0, 1}, {0, 1}, {1, 1}}) {
    view.clipboard.set({clips.begin(), clips.begin() + left});
    desktop.advance(0ms);
    EXPECT_EQ(returns, expected) << left << " are left";
  }
}

}  // namespace
}  // namespace tarnix
