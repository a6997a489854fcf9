#pragma once

#include <xcb/xproto.h>

#include <functional>
#include <memory>
#include <string_view>

#include "backends/x11/connection/connection.h"
#include "backends/x11/connection/window_events.h"
#include "platform/foundation/string.h"

namespace tarnix::x11 {

// Text on its way out, as the bytes of one target.
struct Payload {
  String text;
  xcb_atom_t type = XCB_ATOM_NONE;
  bool isLatin1 = false;  // The text goes out as ISO 8859-1, which must be able to hold it.

  std::size_t size() const;
};

// Hands `payload` out in pieces small enough for one request each.
class PayloadReader {
 public:
  explicit PayloadReader(Payload payload) : payload_(std::move(payload)) {}
  // The next `limit` bytes or fewer; empty at the end. Valid until the next call.
  std::string_view next(std::size_t limit);

 private:
  Payload payload_;
  std::size_t offset_ = 0;
  std::string converted_;
};

// Sends one large content in increments (ICCCM, section 2.7.2), each when the requestor has taken away the
// one before. Ends by itself when the requestor does nothing for some seconds.
class OutgoingTransfer {
 public:
  using Finished = std::function<void(const OutgoingTransfer&)>;

  // Announces the transfer in the requestor's property; the answer event is the caller's. `finished` may drop
  // the transfer.
  OutgoingTransfer(std::shared_ptr<Connection> connection, std::shared_ptr<WindowEvents> events,
                   xcb_window_t requestor, xcb_atom_t property, Payload payload, Finished finished);
  OutgoingTransfer(const OutgoingTransfer&) = delete;
  OutgoingTransfer& operator=(const OutgoingTransfer&) = delete;

  xcb_window_t requestor() const { return requestor_; }
  xcb_atom_t property() const { return property_; }
  // Shared by all transfers to one window.
  const std::shared_ptr<WindowEvents>& events() const { return events_; }
  // The requestor has taken away what was written last.
  void propertyDeleted();

 private:
  void watchClock();
  void finish();

  std::shared_ptr<Connection> connection_;
  std::shared_ptr<WindowEvents> events_;
  xcb_window_t requestor_;
  xcb_atom_t property_;
  xcb_atom_t type_;
  PayloadReader reader_;
  Finished finished_;
  bool isLastSent_ = false;
  RunLoop::Subscription clock_;
};

// How much of a content goes out in one piece.
std::size_t pieceLimit(const Connection& connection);

}  // namespace tarnix::x11
