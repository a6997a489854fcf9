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
  const auto take = [this, identify, weak = std::weak_ptr(former)](std::vector<ClientProcess> all) {
    clients_ = std::move(all);
    const auto process = owner();
    if (!process || !identify) return;
    const auto before = weak.lock();
    const bool isSame = before && before->owner() == process;
    source_ = isSame ? before->source_ : identify(static_cast<int>(process->process));
  };
  askClients(batch_, *connection_, take);
}

std::optional<ClientProcess> Ownership::owner() const {
  const auto found = std::ranges::find(clients_, client_, &ClientProcess::client);
  return found == clients_.end() ? std::nullopt : std::optional(*found);
}

bool Ownership::isOfClientOf(xcb_window_t window) const {
  return window != XCB_WINDOW_NONE && clientOf(*connection_, window) == client_;
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
