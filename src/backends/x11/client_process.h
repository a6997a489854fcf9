#pragma once

#include <xcb/xproto.h>

#include <functional>
#include <optional>

#include "backends/x11/connection.h"
#include "backends/x11/request_batch.h"

namespace tarnix::x11 {

// Asks which process the client that made `window` is, by the socket that it came through. `answered` is told
// none for a client on another machine, for what belongs to no client, and where the client is gone. Not
// called at all where the server can't tell.
void askProcess(RequestBatch& batch, const Connection& connection, xcb_window_t window,
                std::function<void(std::optional<std::uint32_t>)> answered);

// What all windows of one client have in common.
std::uint32_t clientOf(const Connection& connection, xcb_window_t window);

}  // namespace tarnix::x11
