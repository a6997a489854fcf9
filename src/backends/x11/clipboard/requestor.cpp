#include "backends/x11/clipboard/requestor.h"

#include <algorithm>
#include <chrono>
#include <string>

namespace tarnix::x11 {
namespace {

using namespace std::chrono_literals;

constexpr std::size_t kMostSlots = 16;
constexpr RunLoop::Duration kLateAnswerTime = 60s;
constexpr RunLoop::Duration kRestOfTransferTime = 15s;
// An owner that never ends must not keep this program busy for ever.
constexpr int kMostWritesToDrop = 1024;

void deleteProperty(Connection& connection, xcb_window_t window, xcb_atom_t property) {
  xcb_delete_property(connection.xcb(), window, property);
  connection.flushSoon();
}

}  // namespace

Requestor::Requestor(std::shared_ptr<Connection> connection) : connection_(std::move(connection)) {
  for (std::size_t index = 0; index < kMostSlots; ++index) {
    properties_.push_back(connection_->atoms()["TARNIX_ANSWER_" + std::to_string(index)]);
  }
  answers_ = connection_->onEvent(XCB_SELECTION_NOTIFY, [this](const xcb_generic_event_t& event) {
    noteAnswer(reinterpret_cast<const xcb_selection_notify_event_t&>(event));
  });
  propertyChanges_ = connection_->onEvent(XCB_PROPERTY_NOTIFY, [this](const xcb_generic_event_t& event) {
    notePropertyChange(reinterpret_cast<const xcb_property_notify_event_t&>(event));
  });
}

Requestor::Place Requestor::take(User& user) {
  Slot& slot = freeSlot();
  // An answer to an earlier use of the window names another property.
  slot.property = properties_[slot.uses++ % properties_.size()];
  slot.user = &user;
  return {slot.window->id(), slot.property};
}

void Requestor::giveBack(const User& user, Remainder remainder) {
  const auto found =
      std::find_if(slots_.begin(), slots_.end(), [&user](const auto& slot) { return slot->user == &user; });
  if (found == slots_.end()) return;
  Slot& slot = **found;
  slot.user = nullptr;
  slot.apartUntil = {};
  if (remainder == Remainder::nothing) return;
  const bool isLate = remainder == Remainder::lateAnswer;
  slot.apartUntil = connection_->loop().now() + (isLate ? kLateAnswerTime : kRestOfTransferTime);
  slot.writesToDrop = kMostWritesToDrop;
  deleteProperty(*connection_, slot.window->id(), slot.property);
}

// The places that wait for late answers are used again when there is no other, the longest waiting first.
Requestor::Slot& Requestor::freeSlot() {
  const RunLoop::Instant now = connection_->loop().now();
  Slot* best = nullptr;
  for (const auto& slot : slots_) {
    if (slot->user == nullptr && (best == nullptr || slot->apartUntil < best->apartUntil)) best = slot.get();
  }
  if (best != nullptr && (best->apartUntil <= now || slots_.size() >= kMostSlots)) return *best;
  slots_.push_back(std::make_unique<Slot>());
  slots_.back()->window = std::make_unique<HiddenWindow>(connection_);
  slots_.back()->uses = slots_.size();
  return *slots_.back();
}

Requestor::Slot* Requestor::slotOf(xcb_window_t window) {
  const auto found = std::find_if(slots_.begin(), slots_.end(),
                                  [window](const auto& slot) { return slot->window->id() == window; });
  return found == slots_.end() ? nullptr : found->get();
}

void Requestor::noteAnswer(const xcb_selection_notify_event_t& answer) {
  Slot* slot = slotOf(answer.requestor);
  if (slot == nullptr) return;
  const bool isExpected = answer.property == XCB_ATOM_NONE || answer.property == slot->property;
  if (slot->user != nullptr && isExpected) return slot->user->answered(answer);
  if (answer.property != XCB_ATOM_NONE) deleteProperty(*connection_, answer.requestor, answer.property);
}

void Requestor::notePropertyChange(const xcb_property_notify_event_t& change) {
  if (change.state != XCB_PROPERTY_NEW_VALUE) return;
  Slot* slot = slotOf(change.window);
  if (slot == nullptr) return;
  if (slot->user != nullptr && change.atom == slot->property) return slot->user->written();
  if (slot->writesToDrop-- > 0) deleteProperty(*connection_, change.window, change.atom);
}

}  // namespace tarnix::x11
