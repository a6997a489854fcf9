#pragma once

#include <xcb/xproto.h>

#include <memory>
#include <vector>

#include "backends/x11/connection/connection.h"
#include "backends/x11/connection/hidden_window.h"

namespace tarnix::x11 {

// Hands out places for the answers of selection owners, and tells the users of the places what happens there.
// Each place is a window and a property of it that no request before used for long. A place that was given
// back while its owner may still write is kept apart: what arrives there late is taken away unread, so that
// neither the server nor the owner is left sitting on it.
class Requestor {
 public:
  class User {
   public:
    virtual ~User() = default;
    // The owner has answered; with the property XCB_ATOM_NONE it refused.
    virtual void answered(const xcb_selection_notify_event_t& answer) = 0;
    // The owner has written to the property.
    virtual void written() = 0;
  };

  struct Place {
    xcb_window_t window = XCB_WINDOW_NONE;
    xcb_atom_t property = XCB_ATOM_NONE;
  };

  // What may still come to a place that is given back.
  enum class Remainder { nothing, lateAnswer, restOfTransfer };

  explicit Requestor(std::shared_ptr<Connection> connection);
  Requestor(const Requestor&) = delete;
  Requestor& operator=(const Requestor&) = delete;

  // The user is borrowed until it gives the place back.
  Place take(User& user);
  void giveBack(const User& user, Remainder remainder);

  Connection& connection() const { return *connection_; }

 private:
  struct Slot {
    std::unique_ptr<HiddenWindow> window;
    xcb_atom_t property = XCB_ATOM_NONE;
    std::size_t uses = 0;
    User* user = nullptr;
    RunLoop::Instant apartUntil{};
    int writesToDrop = 0;
  };

  Slot& freeSlot();
  Slot* slotOf(xcb_window_t window);
  void noteAnswer(const xcb_selection_notify_event_t& answer);
  void notePropertyChange(const xcb_property_notify_event_t& change);

  std::shared_ptr<Connection> connection_;
  std::vector<xcb_atom_t> properties_;
  std::vector<std::unique_ptr<Slot>> slots_;
  Connection::Subscription answers_;
  Connection::Subscription propertyChanges_;
};

}  // namespace tarnix::x11
