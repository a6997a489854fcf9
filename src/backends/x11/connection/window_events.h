#pragma once

#include <xcb/xproto.h>

#include <memory>

#include "backends/x11/connection/connection.h"

namespace tarnix::x11 {

// While it lives, this program hears of a foreign window's property changes and end, beside what it hears of
// the window anyway.
class WindowEvents {
 public:
  WindowEvents(std::shared_ptr<Connection> connection, xcb_window_t window);
  WindowEvents(const WindowEvents&) = delete;
  WindowEvents& operator=(const WindowEvents&) = delete;
  ~WindowEvents();

 private:
  void select(std::uint32_t events);

  std::shared_ptr<Connection> connection_;
  xcb_window_t window_;
  std::uint32_t former_ = 0;
  Connection::Subscription attributes_;
};

}  // namespace tarnix::x11
