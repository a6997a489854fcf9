#include "backends/x11/windows/screens.h"

#include <xcb/randr.h>
#include <xcb/xcb.h>

#include <utility>

namespace tarnix::x11 {
namespace {

NSScreen screenOf(double x, double y, double width, double height) { return {{x, y, width, height}}; }

std::vector<NSScreen> screensIn(const xcb_randr_get_monitors_reply_t* reply) {
  std::vector<NSScreen> screens;
  if (reply == nullptr) return screens;
  auto monitors = xcb_randr_get_monitors_monitors_iterator(reply);
  for (; monitors.rem > 0; xcb_randr_monitor_info_next(&monitors)) {
    const xcb_randr_monitor_info_t& monitor = *monitors.data;
    const auto place = monitor.primary != 0 ? screens.begin() : screens.end();
    screens.insert(place, screenOf(monitor.x, monitor.y, monitor.width, monitor.height));
  }
  return screens;
}

}  // namespace

ScreenList::ScreenList(std::shared_ptr<Connection> connection) : connection_(std::move(connection)) {
  const xcb_screen_t& root = connection_->screen();
  screens_ = {screenOf(0, 0, root.width_in_pixels, root.height_in_pixels)};
  if (connection_->firstEvent(xcb_randr_id)) watch();
}

void ScreenList::watch() {
  const int firstEvent = *connection_->firstEvent(xcb_randr_id);
  for (const int type : {XCB_RANDR_SCREEN_CHANGE_NOTIFY, XCB_RANDR_NOTIFY}) {
    changes_.push_back(connection_->onEvent(firstEvent + type, [this](const auto&) { read(); }));
  }
  // Monitors that a person defines are told as a change of the root window, and in no other way.
  changes_.push_back(connection_->onEvent(XCB_CONFIGURE_NOTIFY, [this](const auto& event) {
    const auto& change = reinterpret_cast<const xcb_configure_notify_event_t&>(event);
    if (change.window == connection_->screen().root) read();
  }));
  xcb_connection_t* xcb = connection_->xcb();
  const xcb_window_t root = connection_->screen().root;
  const std::uint32_t events = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
  xcb_change_window_attributes(xcb, root, XCB_CW_EVENT_MASK, &events);
  // The server tells only of what was there in the version that is named first.
  xcb_discard_reply(xcb, xcb_randr_query_version(xcb, 1, 5).sequence);
  xcb_randr_select_input(xcb, root,
                         XCB_RANDR_NOTIFY_MASK_SCREEN_CHANGE | XCB_RANDR_NOTIFY_MASK_CRTC_CHANGE |
                             XCB_RANDR_NOTIFY_MASK_OUTPUT_CHANGE);
  read();
}

// A reading that is under way may be of the state before the change.
void ScreenList::read() {
  struct Answers {
    std::vector<NSScreen> root;
    std::vector<NSScreen> monitors;
  };
  const auto answers = std::make_shared<Answers>();
  const xcb_window_t root = connection_->screen().root;
  reading_ = std::make_unique<RequestBatch>(connection_);
  reading_->ask<xcb_get_geometry_reply_t>(xcb_get_geometry(connection_->xcb(), root),
                                          [answers](const auto* reply) {
                                            if (reply != nullptr)
                                              answers->root = {screenOf(0, 0, reply->width, reply->height)};
                                          });
  reading_->ask<xcb_randr_get_monitors_reply_t>(
      xcb_randr_get_monitors(connection_->xcb(), root, 1),
      [answers](const auto* reply) { answers->monitors = screensIn(reply); });
  reading_->then([this, answers] {
    if (auto& found = answers->monitors.empty() ? answers->root : answers->monitors; !found.empty()) {
      screens_ = std::move(found);
    }
  });
}

}  // namespace tarnix::x11
