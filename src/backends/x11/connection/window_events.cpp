#include "backends/x11/connection/window_events.h"

namespace tarnix::x11 {
namespace {

constexpr std::uint32_t kEvents = XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;

}  // namespace

WindowEvents::WindowEvents(std::shared_ptr<Connection> connection, xcb_window_t window)
    : connection_(std::move(connection)), window_(window) {
  // Asked before the change, so the answer tells what was selected until then.
  const auto cookie = xcb_get_window_attributes(connection_->xcb(), window_);
  select(kEvents);
  attributes_ = connection_->onReply<xcb_get_window_attributes_reply_t>(cookie, [this](auto attributes) {
    if (!attributes || attributes->your_event_mask == 0) return;
    former_ = attributes->your_event_mask;
    select(former_ | kEvents);
  });
}

WindowEvents::~WindowEvents() { select(former_); }

void WindowEvents::select(std::uint32_t events) {
  xcb_change_window_attributes(connection_->xcb(), window_, XCB_CW_EVENT_MASK, &events);
  connection_->flushSoon();
}

}  // namespace tarnix::x11
