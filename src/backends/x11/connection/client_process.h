#pragma once

#include <xcb/xproto.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "backends/x11/connection/connection.h"
#include "backends/x11/connection/request_batch.h"

namespace tarnix::x11 {

// Asks which process the client that made `window` is, by the socket that it came through. `answered` is told
// none for a client on another machine, for what belongs to no client, and where the client is gone. Not
// called at all where the server can't tell.
void askProcess(RequestBatch& batch, const Connection& connection, xcb_window_t window,
                std::function<void(std::optional<std::uint32_t>)> answered);

// A client of the display, and the process at its other end. Identifiers of clients are given anew as soon as
// one ends; together with the process they are not.
struct ClientProcess {
  std::uint32_t client = 0;
  std::uint32_t process = 0;
  friend bool operator==(const ClientProcess&, const ClientProcess&) = default;
};

// Asks for all clients on this machine. None where the server can't tell.
void askClients(RequestBatch& batch, const Connection& connection,
                std::function<void(std::vector<ClientProcess>)> answered);

// What all windows of one client have in common.
std::uint32_t clientOf(const Connection& connection, xcb_window_t window);

}  // namespace tarnix::x11
