#include "backends/x11/ownership.h"

#include <xcb/res.h>

#include <algorithm>
#include <utility>

#include "backends/x11/client_process.h"

namespace tarnix::x11 {

Ownership::Ownership(std::shared_ptr<Connection> connection,
                     const xcb_xfixes_selection_notify_event_t& change, const Identify& identify)
    : connection_(std::move(connection)),
      client_(clientOf(*connection_, change.owner)),
      time_(change.timestamp),
      batch_(connection_) {
  askForClients();
  if (change.owner == XCB_WINDOW_NONE) return;
  const auto manager = xcb_get_selection_owner(connection_->xcb(), connection_->atoms()["CLIPBOARD_MANAGER"]);
  batch_.ask<xcb_get_selection_owner_reply_t>(manager, [this](const auto* reply) {
    const xcb_window_t window = reply != nullptr ? reply->owner : xcb_window_t{XCB_WINDOW_NONE};
    isManager_ = window != XCB_WINDOW_NONE && clientOf(*connection_, window) == client_;
  });
  if (!identify) return;
  askProcess(batch_, *connection_, change.owner, [this, identify](std::optional<std::uint32_t> process) {
    if (process) source_ = identify(static_cast<int>(*process));
  });
}

void Ownership::askForClients() {
  if (!connection_->firstEvent(xcb_res_id)) return;
  batch_.ask<xcb_res_query_clients_reply_t>(
      xcb_res_query_clients(connection_->xcb()), [this](const auto* reply) {
        if (reply == nullptr) return;
        const xcb_res_client_t* const first = xcb_res_query_clients_clients(reply);
        std::for_each(first, first + xcb_res_query_clients_clients_length(reply),
                      [this](const xcb_res_client_t& each) { clients_.push_back(each.resource_base); });
      });
}

bool Ownership::hasWitnessed(const Ownership& former) const {
  const auto& present = former.clients_;
  return present.empty() || std::find(present.begin(), present.end(), client_) != present.end();
}

}  // namespace tarnix::x11
