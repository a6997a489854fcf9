#pragma once

#include <xcb/xcb.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "backends/x11/connection/connection.h"
#include "backends/x11/connection/hidden_window.h"

namespace tarnix::x11::testing {

// Another client of the display, in the loop of the test, for what no well-behaved program does. It owns the
// clipboard and answers as told, or asks for it.
class Peer {
 public:
  struct Answer {
    std::string type;
    std::uint8_t format = 8;
    std::string bytes;
  };
  using Request = xcb_selection_request_event_t;

  Peer(const std::string& display, RunLoop& loop);
  Peer(const Peer&) = delete;
  Peer& operator=(const Peer&) = delete;

  // As owner. A target without an answer is refused; `onRequest` may take a request over by giving true.
  void own(xcb_timestamp_t time = XCB_CURRENT_TIME);
  std::map<std::string, Answer> answers;
  std::function<bool(const Request&)> onRequest;
  // The property of a transfer has been taken away by the requestor.
  std::function<void(xcb_window_t window, xcb_atom_t property)> onDeleted;
  // The targets that were asked for.
  std::vector<std::string> requests;
  void put(xcb_window_t window, xcb_atom_t property, const Answer& answer);
  void notify(const Request& request, xcb_atom_t property);
  void watch(xcb_window_t window);

  // As requestor.
  void ask(const std::string& target, const std::string& property, xcb_timestamp_t time = XCB_CURRENT_TIME);
  // Properties of the answers, "none" for a refusal.
  std::vector<std::string> notified;
  // The bytes of a property of the own window, and its type. Waits for the server.
  Answer read(const std::string& property, bool deletes = false);
  void write(const std::string& property, const Answer& answer);

  xcb_atom_t atom(std::string_view name);
  std::string nameOf(xcb_atom_t atom);
  std::string atomBytes(const std::vector<std::string>& names);
  xcb_window_t window() const { return window_->id(); }
  Connection& connection() { return *connection_; }

 private:
  void answer(const Request& request);

  std::shared_ptr<Connection> connection_;
  std::unique_ptr<HiddenWindow> window_;
  std::vector<Connection::Subscription> events_;
};

}  // namespace tarnix::x11::testing
