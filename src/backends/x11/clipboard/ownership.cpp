#include "backends/x11/clipboard/ownership.h"

#include <algorithm>
#include <utility>

namespace tarnix::x11 {

Ownership::Ownership(std::shared_ptr<Connection> connection,
                     const xcb_xfixes_selection_notify_event_t& change, const Identify& identify,
                     const std::shared_ptr<const Ownership>& former)
    : connection_(std::move(connection)),
      client_(clientOf(*connection_, change.owner)),
      time_(change.timestamp),
      batch_(connection_) {
  askClients(batch_, *connection_, [this](std::vector<ClientProcess> all) { clients_ = std::move(all); });
  if (change.owner == XCB_WINDOW_NONE) return;
  const auto manager = xcb_get_selection_owner(connection_->xcb(), connection_->atoms()["CLIPBOARD_MANAGER"]);
  batch_.ask<xcb_get_selection_owner_reply_t>(manager, [this](const auto* reply) {
    const xcb_window_t window = reply != nullptr ? reply->owner : xcb_window_t{XCB_WINDOW_NONE};
    isManager_ = window != XCB_WINDOW_NONE && clientOf(*connection_, window) == client_;
  });
  if (!identify) return;
  const auto take = [this, identify, weak = std::weak_ptr(former)](std::optional<std::uint32_t> process) {
    process_ = process;
    const auto before = weak.lock();
    const bool isSame = before && before->client_ == client_ && before->process_ == process_;
    if (isSame) source_ = before->source_;
    if (!isSame && process) source_ = identify(static_cast<int>(*process));
  };
  askProcess(batch_, *connection_, change.owner, take);
}

std::optional<ClientProcess> Ownership::owner() const {
  const auto found = std::ranges::find(clients_, client_, &ClientProcess::client);
  return found == clients_.end() ? std::nullopt : std::optional(*found);
}

bool Ownership::isOfSameClientAs(const Ownership& other) const {
  return client_ == other.client_ && owner() == other.owner();
}

bool Ownership::hasWitnessed(const Ownership& former) const {
  const auto& present = former.clients_;
  const auto self = owner();
  return present.empty() || (self && std::ranges::find(present, *self) != present.end());
}

}  // namespace tarnix::x11
