#include "bench/display_client.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>

namespace tarnix::bench {

DisplayClient::DisplayClient() : connection_(xcb_connect(nullptr, nullptr)), root_(XCB_NONE) {
  if (isGone()) {
    std::fputs("No X display.\n", stderr);
    std::exit(1);
  }
  root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
}

DisplayClient::~DisplayClient() { xcb_disconnect(connection_); }

xcb_atom_t DisplayClient::atom(std::string_view name) const {
  const auto cookie = xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data());
  const Held<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection_, cookie, nullptr));
  return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

Held<xcb_generic_event_t> DisplayClient::nextEvent(std::chrono::microseconds patience, int otherInput) const {
  xcb_flush(connection_);
  Held<xcb_generic_event_t> event(xcb_poll_for_event(connection_));
  if (event || isGone() || patience.count() <= 0) return event;
  std::array<pollfd, 2> inputs{{{xcb_get_file_descriptor(connection_), POLLIN, 0}, {otherInput, POLLIN, 0}}};
  const timespec limit{patience.count() / 1'000'000, patience.count() % 1'000'000 * 1000};
  ppoll(inputs.data(), inputs.size(), &limit, nullptr);
  return Held<xcb_generic_event_t>(xcb_poll_for_event(connection_));
}

void DisplayClient::selectEvents(xcb_window_t window, std::uint32_t mask) const {
  xcb_change_window_attributes(connection_, window, XCB_CW_EVENT_MASK, &mask);
}

std::vector<std::uint8_t> DisplayClient::picture(xcb_window_t window, const Region& region) const {
  const auto cookie = xcb_get_image(connection_, XCB_IMAGE_FORMAT_Z_PIXMAP, window, region.x, region.y,
                                    region.width, region.height, ~std::uint32_t{0});
  xcb_generic_error_t* problem = nullptr;
  const Held<xcb_get_image_reply_t> reply(xcb_get_image_reply(connection_, cookie, &problem));
  const Held<xcb_generic_error_t> ignored(problem);
  if (!reply) return {};
  const std::uint8_t* bytes = xcb_get_image_data(reply.get());
  return {bytes, bytes + xcb_get_image_data_length(reply.get())};
}

Region DisplayClient::extent(xcb_window_t window) const {
  const Held<xcb_get_geometry_reply_t> reply(
      xcb_get_geometry_reply(connection_, xcb_get_geometry(connection_, window), nullptr));
  return reply ? Region{0, 0, reply->width, reply->height} : Region{};
}

bool DisplayClient::isOnScreen(xcb_window_t window) const {
  const Held<xcb_get_window_attributes_reply_t> reply(
      xcb_get_window_attributes_reply(connection_, xcb_get_window_attributes(connection_, window), nullptr));
  return reply && reply->map_state == XCB_MAP_STATE_VIEWABLE;
}

std::uint32_t DisplayClient::processOf(xcb_window_t window) const {
  const auto cookie = xcb_get_property(connection_, 0, window, atom("_NET_WM_PID"), XCB_ATOM_CARDINAL, 0, 1);
  const Held<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection_, cookie, nullptr));
  std::uint32_t process = 0;
  if (reply && reply->format == 32 && reply->value_len == 1) {
    std::memcpy(&process, xcb_get_property_value(reply.get()), sizeof process);
  }
  return process;
}

bool isInputClosed() {
  pollfd input{STDIN_FILENO, POLLIN, 0};
  if (poll(&input, 1, 0) <= 0) return false;
  char ignored[64];
  return read(STDIN_FILENO, ignored, sizeof ignored) <= 0;
}

}  // namespace tarnix::bench
