#pragma once

#include <xcb/xcb.h>

#include <chrono>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tarnix::test {

struct FreeWithC {
  void operator()(void* pointer) const;
};
template <typename T>
using Held = std::unique_ptr<T, FreeWithC>;
using Event = Held<xcb_generic_event_t>;

// A connection to the display of the environment with one hidden window: what the scripted owner needs of X.
// Errors of requests on other programs' windows come as events and are for the caller to ignore.
class OwnerClient {
 public:
  OwnerClient();
  OwnerClient(const OwnerClient&) = delete;
  OwnerClient& operator=(const OwnerClient&) = delete;
  ~OwnerClient();

  xcb_connection_t* connection() const { return connection_; }
  xcb_window_t window() const { return window_; }
  // Nothing when the time is up or the display is gone.
  Event nextEvent(std::chrono::milliseconds patience);
  bool isGone() const;

  xcb_atom_t atom(std::string_view name);
  std::vector<xcb_atom_t> atoms(const std::vector<std::string>& names);
  std::string nameOf(xcb_atom_t atom);

  // The server's clock, by way of a property that does not change.
  xcb_timestamp_t serverTime();
  bool ownsClipboard();
  void setProperty(xcb_window_t window, xcb_atom_t property, xcb_atom_t type, std::string_view bytes,
                   std::uint8_t format = 8);
  void setProperty(xcb_window_t window, xcb_atom_t property, xcb_atom_t type,
                   std::span<const std::uint32_t> items);
  // `property` is none to refuse.
  void notify(const xcb_selection_request_event_t& request, xcb_atom_t property);
  void showWindow(const std::string& windowClass);

 private:
  xcb_connection_t* connection_;
  xcb_window_t root_;
  xcb_window_t window_;
  std::unordered_map<std::string, xcb_atom_t> atoms_;
  std::unordered_map<xcb_atom_t, std::string> names_;
};

}  // namespace tarnix::test
