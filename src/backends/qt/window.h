#pragma once

#include <memory>

#include "platform/swiftui/view_graph.h"

namespace tarnix::qt {

// A window that shows a view graph, and tells it whether anybody can see it. The graph outlives the window.
class Window {
 public:
  explicit Window(ViewGraph& graph);
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;
  ~Window();

  void show();

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace tarnix::qt
