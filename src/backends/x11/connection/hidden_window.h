#pragma once

#include <xcb/xproto.h>

#include <memory>
#include <utility>

#include "backends/x11/connection/connection.h"

namespace tarnix::x11 {

// A window that is never shown, which selections are owned and asked for with. Its property changes are told
// to this program.
class HiddenWindow {
 public:
  explicit HiddenWindow(std::shared_ptr<Connection> connection);
  HiddenWindow(const HiddenWindow&) = delete;
  HiddenWindow& operator=(const HiddenWindow&) = delete;
  ~HiddenWindow();

  xcb_window_t id() const { return id_; }

 private:
  std::shared_ptr<Connection> connection_;
  xcb_window_t id_;
};

}  // namespace tarnix::x11
