#include "backends/x11/connection/request_batch.h"

#include <xcb/xcb.h>

namespace tarnix::x11 {
namespace {

// In units of four bytes. Longer lists than this are of no program that means well.
constexpr std::uint32_t kLongestProperty = 4096;

}  // namespace

void RequestBatch::askProperty(xcb_window_t window, std::string_view name,
                               std::function<void(PropertyValue)> answered) {
  const xcb_atom_t atom = connection_->atoms()[name];
  const auto cookie =
      xcb_get_property(connection_->xcb(), 0, window, atom, XCB_ATOM_ANY, 0, kLongestProperty);
  ask<xcb_get_property_reply_t>(
      cookie, [answered = std::move(answered)](const auto* reply) { answered(PropertyValue(reply)); });
}

void RequestBatch::then(std::function<void()> next) {
  next_ = std::move(next);
  if (unanswered_ == 0) finish();
}

void RequestBatch::finish() {
  answers_.clear();
  if (const auto next = std::exchange(next_, nullptr)) next();
}

}  // namespace tarnix::x11
