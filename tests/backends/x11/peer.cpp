#include "backends/x11/peer.h"

#include <array>
#include <cstring>
#include <stdexcept>

namespace tarnix::x11::testing {

Peer::Peer(const std::string& display, RunLoop& loop) {
  auto opened = Connection::open(display, loop);
  if (!opened) throw std::runtime_error(opened.error().detail);
  connection_ = std::move(*opened);
  window_ = std::make_unique<HiddenWindow>(connection_);
  events_.push_back(connection_->onEvent(XCB_SELECTION_REQUEST, [this](const xcb_generic_event_t& event) {
    answer(reinterpret_cast<const Request&>(event));
  }));
  events_.push_back(connection_->onEvent(XCB_SELECTION_NOTIFY, [this](const xcb_generic_event_t& event) {
    const auto& notice = reinterpret_cast<const xcb_selection_notify_event_t&>(event);
    notified.push_back(notice.property == XCB_ATOM_NONE ? "none" : nameOf(notice.property));
  }));
  events_.push_back(connection_->onEvent(XCB_PROPERTY_NOTIFY, [this](const xcb_generic_event_t& event) {
    const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
    if (change.state == XCB_PROPERTY_DELETE && onDeleted) onDeleted(change.window, change.atom);
  }));
}

void Peer::own(xcb_timestamp_t time) {
  xcb_set_selection_owner(connection_->xcb(), window(), atom("CLIPBOARD"), time);
  connection_->flushSoon();
}

void Peer::answer(const Request& request) {
  const std::string target = nameOf(request.target);
  requests.push_back(target);
  if (onRequest && onRequest(request)) return;
  const auto found = answers.find(target);
  if (found == answers.end()) return notify(request, XCB_ATOM_NONE);
  put(request.requestor, request.property, found->second);
  notify(request, request.property);
}

void Peer::put(xcb_window_t window, xcb_atom_t property, const Answer& answer) {
  xcb_change_property(connection_->xcb(), XCB_PROP_MODE_REPLACE, window, property, atom(answer.type),
                      answer.format, static_cast<std::uint32_t>(answer.bytes.size() * 8 / answer.format),
                      answer.bytes.data());
  connection_->flushSoon();
}

void Peer::notify(const Request& request, xcb_atom_t property) {
  std::array<char, 32> bytes{};
  xcb_selection_notify_event_t event{};
  event.response_type = XCB_SELECTION_NOTIFY;
  event.time = request.time;
  event.requestor = request.requestor;
  event.selection = request.selection;
  event.target = request.target;
  event.property = property;
  std::memcpy(bytes.data(), &event, sizeof event);
  xcb_send_event(connection_->xcb(), 0, request.requestor, 0, bytes.data());
  connection_->flushSoon();
}

void Peer::watch(xcb_window_t window) {
  const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
  xcb_change_window_attributes(connection_->xcb(), window, XCB_CW_EVENT_MASK, &events);
}

void Peer::ask(const std::string& target, const std::string& property, xcb_timestamp_t time) {
  xcb_convert_selection(connection_->xcb(), window(), atom("CLIPBOARD"), atom(target),
                        property.empty() ? xcb_atom_t{XCB_ATOM_NONE} : atom(property), time);
  connection_->flushSoon();
}

Peer::Answer Peer::read(const std::string& property, bool deletes) {
  const auto cookie = xcb_get_property(connection_->xcb(), deletes ? 1 : 0, window(), atom(property),
                                       XCB_GET_PROPERTY_TYPE_ANY, 0, 1 << 24);
  const Owned<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection_->xcb(), cookie, nullptr));
  if (!reply || reply->type == XCB_ATOM_NONE) return {"none", 0, ""};
  return {nameOf(reply->type), reply->format,
          std::string(static_cast<const char*>(xcb_get_property_value(reply.get())),
                      static_cast<std::size_t>(xcb_get_property_value_length(reply.get())))};
}

void Peer::write(const std::string& property, const Answer& answer) { put(window(), atom(property), answer); }

xcb_atom_t Peer::atom(std::string_view name) {
  if (const xcb_atom_t known = connection_->atoms()[name]) return known;
  const auto cookie =
      xcb_intern_atom(connection_->xcb(), 0, static_cast<std::uint16_t>(name.size()), name.data());
  const Owned<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection_->xcb(), cookie, nullptr));
  return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

std::string Peer::nameOf(xcb_atom_t atom) {
  const auto cookie = xcb_get_atom_name(connection_->xcb(), atom);
  const Owned<xcb_get_atom_name_reply_t> reply(xcb_get_atom_name_reply(connection_->xcb(), cookie, nullptr));
  if (!reply) return "?";
  return {xcb_get_atom_name_name(reply.get()),
          static_cast<std::size_t>(xcb_get_atom_name_name_length(reply.get()))};
}

std::string Peer::atomBytes(const std::vector<std::string>& names) {
  std::string bytes;
  for (const std::string& name : names) {
    const xcb_atom_t value = atom(name);
    bytes.append(reinterpret_cast<const char*>(&value), sizeof value);
  }
  return bytes;
}

}  // namespace tarnix::x11::testing
