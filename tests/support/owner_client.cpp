#include "support/owner_client.h"

#include <poll.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace tarnix::test {

void FreeWithC::operator()(void* pointer) const { std::free(pointer); }

OwnerClient::OwnerClient() : connection_(xcb_connect(nullptr, nullptr)) {
  if (isGone()) {
    std::fputs("No X display.\n", stderr);
    std::exit(1);
  }
  root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
  window_ = xcb_generate_id(connection_);
  const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
  xcb_create_window(connection_, 0, window_, root_, 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY, 0,
                    XCB_CW_EVENT_MASK, &events);
}

OwnerClient::~OwnerClient() { xcb_disconnect(connection_); }

bool OwnerClient::isGone() const { return xcb_connection_has_error(connection_) != 0; }

Event OwnerClient::nextEvent(std::chrono::milliseconds patience) {
  xcb_flush(connection_);
  Event event(xcb_poll_for_event(connection_));
  if (event || isGone() || patience.count() <= 0) return event;
  pollfd readable{xcb_get_file_descriptor(connection_), POLLIN, 0};
  poll(&readable, 1, static_cast<int>(patience.count()));
  return Event(xcb_poll_for_event(connection_));
}

xcb_atom_t OwnerClient::atom(std::string_view name) { return atoms({std::string(name)}).front(); }

std::vector<xcb_atom_t> OwnerClient::atoms(const std::vector<std::string>& names) {
  std::vector<std::pair<const std::string*, xcb_intern_atom_cookie_t>> asked;
  for (const std::string& name : names) {
    if (atoms_.contains(name)) continue;
    asked.emplace_back(&name,
                       xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data()));
  }
  for (const auto& [name, cookie] : asked) {
    const Held<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection_, cookie, nullptr));
    if (reply) atoms_[*name] = reply->atom;
    if (reply) names_[reply->atom] = *name;
  }
  std::vector<xcb_atom_t> found;
  for (const std::string& name : names) found.push_back(atoms_[name]);
  return found;
}

std::string OwnerClient::nameOf(xcb_atom_t atom) {
  if (const auto known = names_.find(atom); known != names_.end()) return known->second;
  const Held<xcb_get_atom_name_reply_t> reply(
      xcb_get_atom_name_reply(connection_, xcb_get_atom_name(connection_, atom), nullptr));
  if (!reply) return "an atom that does not exist";
  const auto length = static_cast<std::size_t>(xcb_get_atom_name_name_length(reply.get()));
  return names_[atom] = std::string(xcb_get_atom_name_name(reply.get()), length);
}

xcb_timestamp_t OwnerClient::serverTime() {
  const xcb_atom_t property = atom("TARNIX_TEST_TIME");
  xcb_change_property(connection_, XCB_PROP_MODE_APPEND, window_, property, XCB_ATOM_STRING, 8, 0, nullptr);
  for (int tries = 0; tries < 100 && !isGone(); ++tries) {
    const Event event = nextEvent(std::chrono::milliseconds(100));
    if (!event || (event->response_type & 0x7f) != XCB_PROPERTY_NOTIFY) continue;
    xcb_property_notify_event_t change;
    std::memcpy(&change, event.get(), sizeof change);
    if (change.atom == property) return change.time;
  }
  return XCB_CURRENT_TIME;
}

bool OwnerClient::ownsClipboard() {
  const Held<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(
      connection_, xcb_get_selection_owner(connection_, atom("CLIPBOARD")), nullptr));
  return reply && reply->owner == window_;
}

void OwnerClient::setProperty(xcb_window_t window, xcb_atom_t property, xcb_atom_t type,
                              std::string_view bytes, std::uint8_t format) {
  xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, property, type, format,
                      static_cast<std::uint32_t>(bytes.size() / (format / 8)), bytes.data());
}

void OwnerClient::setProperty(xcb_window_t window, xcb_atom_t property, xcb_atom_t type,
                              std::span<const std::uint32_t> items) {
  xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, property, type, 32,
                      static_cast<std::uint32_t>(items.size()), items.data());
}

void OwnerClient::notify(const xcb_selection_request_event_t& request, xcb_atom_t property) {
  xcb_selection_notify_event_t answer{};
  answer.response_type = XCB_SELECTION_NOTIFY;
  answer.time = request.time;
  answer.requestor = request.requestor;
  answer.selection = request.selection;
  answer.target = request.target;
  answer.property = property;
  char buffer[32] = {};  // The length of every event on the wire; the structure is shorter.
  std::memcpy(buffer, &answer, sizeof answer);
  xcb_send_event(connection_, 0, request.requestor, 0, buffer);
  xcb_flush(connection_);
}

void OwnerClient::showWindow(const std::string& windowClass) {
  const xcb_window_t shown = xcb_generate_id(connection_);
  xcb_create_window(connection_, XCB_COPY_FROM_PARENT, shown, root_, 40, 40, 240, 120, 0,
                    XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
  setProperty(shown, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, windowClass);
  setProperty(shown, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING,
              windowClass + std::string(1, '\0') + windowClass + std::string(1, '\0'));
  const auto process = static_cast<std::uint32_t>(getpid());
  setProperty(shown, atom("_NET_WM_PID"), XCB_ATOM_CARDINAL, std::span(&process, 1));
  xcb_map_window(connection_, shown);
}

}  // namespace tarnix::test
