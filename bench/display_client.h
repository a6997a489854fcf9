#pragma once

#include <xcb/xcb.h>

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string_view>
#include <vector>

namespace tarnix::bench {

struct FreeWithC {
  void operator()(void* pointer) const { std::free(pointer); }
};
template <typename T>
using Held = std::unique_ptr<T, FreeWithC>;

// In pixels of the window that it is a part of.
struct Region {
  std::int16_t x = 0;
  std::int16_t y = 0;
  std::uint16_t width = 0;
  std::uint16_t height = 0;
};

// A connection to the display of the environment, with what looking at another program's window from outside
// takes. Ends the program when there is no display.
class DisplayClient {
 public:
  DisplayClient();
  DisplayClient(const DisplayClient&) = delete;
  DisplayClient& operator=(const DisplayClient&) = delete;
  ~DisplayClient();

  xcb_connection_t* connection() const { return connection_; }
  xcb_window_t root() const { return root_; }
  bool isGone() const { return xcb_connection_has_error(connection_) != 0; }
  xcb_atom_t atom(std::string_view name) const;

  // Nothing when none came in time. `otherInput` is one more descriptor that ends the waiting.
  Held<xcb_generic_event_t> nextEvent(std::chrono::microseconds patience, int otherInput = -1) const;
  void selectEvents(xcb_window_t window, std::uint32_t mask) const;

  // What a window shows, as the server's bytes, four a pixel; empty while it is not on screen.
  std::vector<std::uint8_t> picture(xcb_window_t window, const Region& region) const;
  // The whole inside of a window; of no size when there is no such window.
  Region extent(xcb_window_t window) const;
  bool isOnScreen(xcb_window_t window) const;
  // The process that says the window is its own; 0 when none does.
  std::uint32_t processOf(xcb_window_t window) const;

 private:
  xcb_connection_t* connection_;
  xcb_window_t root_;
};

// True when whoever holds the other end of standard input has closed it, which is how these programs are told
// to end.
bool isInputClosed();

}  // namespace tarnix::bench
