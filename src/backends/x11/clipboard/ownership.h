#pragma once

#include <xcb/xfixes.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "backends/x11/connection/client_process.h"
#include "backends/x11/connection/connection.h"
#include "backends/x11/connection/request_batch.h"
#include "platform/foundation/string.h"

namespace tarnix::x11 {

// Tells the application that a process is. Called while the process most likely still runs; what it gives is
// called once the windows are known, and gives none where the process is no application by itself.
using Identify = std::function<std::function<std::optional<String>()>(int processIdentifier)>;

// Who took the clipboard, or that it was left without an owner, at one moment. The server is asked at once,
// since the identifiers of windows and processes are given anew once their holder is gone; its answers come
// before any of the owner's.
class Ownership {
 public:
  // `identify` may be empty. It is not called for an owner that is the same process as the `former` one, if
  // any.
  Ownership(std::shared_ptr<Connection> connection, const xcb_xfixes_selection_notify_event_t& change,
            const Identify& identify, const std::shared_ptr<const Ownership>& former = nullptr);
  Ownership(const Ownership&) = delete;
  Ownership& operator=(const Ownership&) = delete;

  // The owner took the clipboard once more, without a loss in between.
  void renew(const xcb_xfixes_selection_notify_event_t& change) { time_ = change.timestamp; }

  // Whether it came within `limit`, in milliseconds of the server's clock, after a former one.
  bool follows(const Ownership& former, std::uint32_t limit) const { return time_ - former.time_ <= limit; }
  bool isOfSameClientAs(const Ownership& other) const;
  // Whether the owner is the client that made `window`; false for no window.
  bool isOfClientOf(xcb_window_t window) const;
  // Whether the owner was on the display already when `former` began, and so may have been watching.
  bool hasWitnessed(const Ownership& former) const;
  // The application that owns the content.
  std::optional<String> source() const { return source_ ? source_() : std::nullopt; }

 private:
  // By what the server knew at that moment; absent where it could not tell.
  std::optional<ClientProcess> owner() const;

  std::shared_ptr<Connection> connection_;
  std::uint32_t client_;
  xcb_timestamp_t time_;
  std::vector<ClientProcess> clients_;  // All on the display; none where the server can't tell.
  std::function<std::optional<String>()> source_;
  RequestBatch batch_;
};

}  // namespace tarnix::x11
