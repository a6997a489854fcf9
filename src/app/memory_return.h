#pragma once

#include "history/content_view.h"
#include "platform/swiftui/view_graph.h"

namespace tarnix {

// Gives memory back to the system when the history has become much smaller, as after its clearing: the
// allocator would keep it for itself. The view and the graph that shows it are borrowed.
class MemoryReturn {
 public:
  MemoryReturn(const ContentView& view, const ViewGraph& graph, RunLoop& loop);

  // Set up before anything of size is allocated: large texts get pages of their own, which go when they go.
  static void configureAllocator();

 private:
  void check();

  const ContentView& view_;
  RunLoop& loop_;
  std::size_t lastCount_ = 0;
  AnyCancellable subscription_;
};

}  // namespace tarnix
