#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "backends/linux/poll_driver.h"
#include "backends/x11/connection/connection.h"
#include "backends/x11/windows/window_server.h"
#include "backends/x11/x_server.h"
#include "support/process.h"

namespace tarnix::x11::testing {

// Another program on a display, which makes windows and waits for the server's answers.
class WindowClient {
 public:
  struct Area {
    std::int16_t x = 0;
    std::int16_t y = 0;
    std::uint16_t width = 200;
    std::uint16_t height = 100;
  };

  explicit WindowClient(const std::string& display);
  WindowClient(const WindowClient&) = delete;
  WindowClient& operator=(const WindowClient&) = delete;
  ~WindowClient();

  xcb_connection_t* xcb() { return xcb_; }
  xcb_window_t root() const { return root_; }
  xcb_atom_t atom(std::string_view name);

  // Not shown yet. `parent` is the root window unless given.
  xcb_window_t create(Area area, xcb_window_t parent = XCB_WINDOW_NONE, bool isOverrideRedirect = false);
  void show(xcb_window_t window);
  void destroy(xcb_window_t window);
  void setItems(xcb_window_t window, std::string_view property, xcb_atom_t type,
                std::vector<std::uint32_t> items);
  std::vector<std::uint32_t> items(xcb_window_t window, std::string_view property);
  void setAtom(xcb_window_t window, std::string_view property, std::string_view value);
  void setBytes(xcb_window_t window, std::string_view property, std::string_view type,
                std::string_view bytes);
  // Asks the window manager for something.
  void tellManager(xcb_window_t window, std::string_view message, std::initializer_list<std::uint32_t> data);
  // Until here the server has carried out everything that was asked.
  void settle();

 private:
  xcb_connection_t* xcb_;
  xcb_window_t root_;
};

// A display with or without a window manager, another program on it, and the window server under test.
class WindowDesktop {
 public:
  enum class Manager { openbox, none };

  explicit WindowDesktop(Manager manager);

  // Refreshes until `condition` holds; false when it does not within 5 s.
  bool eventually(const std::function<bool()>& condition);
  void refresh();
  bool runUntil(const std::function<bool()>& condition);
  // Null when there is no such window.
  std::optional<CGWindowDictionary> find(xcb_window_t window, CGWindowListOption options = 0) const;
  // Their numbers, front to back, of those in `wanted`.
  std::vector<xcb_window_t> order(std::initializer_list<xcb_window_t> wanted) const;
  test::Process start(std::vector<std::string> command);

  XServer server;
  RunLoop loop;
  linux_desktop::PollDriver driver;
  std::shared_ptr<Connection> connection;
  WindowServer windows;
  std::unique_ptr<WindowClient> client;

 private:
  std::optional<test::Process> manager_;
};

}  // namespace tarnix::x11::testing
