#include "backends/x11/windows/window_desktop.h"

#include <algorithm>
#include <chrono>
#include <stdexcept>

#include "backends/x11/connection/property_value.h"

namespace tarnix::x11::testing {
namespace {

using namespace std::chrono_literals;

constexpr auto kPatience = 5s;

std::shared_ptr<Connection> open(const std::string& display, RunLoop& loop) {
  auto opened = Connection::open(display, loop);
  if (!opened) throw std::runtime_error(opened.error().detail);
  return std::move(*opened);
}

}  // namespace

WindowClient::WindowClient(const std::string& display) : xcb_(xcb_connect(display.c_str(), nullptr)) {
  if (xcb_connection_has_error(xcb_) != 0) throw std::runtime_error("no connection to " + display);
  root_ = xcb_setup_roots_iterator(xcb_get_setup(xcb_)).data->root;
}

WindowClient::~WindowClient() { xcb_disconnect(xcb_); }

xcb_atom_t WindowClient::atom(std::string_view name) {
  const auto cookie = xcb_intern_atom(xcb_, 0, static_cast<std::uint16_t>(name.size()), name.data());
  const Owned<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(xcb_, cookie, nullptr));
  return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

xcb_window_t WindowClient::create(Area area, xcb_window_t parent, bool isOverrideRedirect) {
  const xcb_window_t window = xcb_generate_id(xcb_);
  const std::uint32_t redirect = isOverrideRedirect ? 1 : 0;
  xcb_create_window(xcb_, XCB_COPY_FROM_PARENT, window, parent == XCB_WINDOW_NONE ? root_ : parent, area.x,
                    area.y, area.width, area.height, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                    XCB_CW_OVERRIDE_REDIRECT, &redirect);
  return window;
}

void WindowClient::show(xcb_window_t window) {
  xcb_map_window(xcb_, window);
  settle();
}

void WindowClient::destroy(xcb_window_t window) {
  xcb_destroy_window(xcb_, window);
  settle();
}

void WindowClient::setItems(xcb_window_t window, std::string_view property, xcb_atom_t type,
                            std::vector<std::uint32_t> items) {
  xcb_change_property(xcb_, XCB_PROP_MODE_REPLACE, window, atom(property), type, 32,
                      static_cast<std::uint32_t>(items.size()), items.data());
  settle();
}

std::vector<std::uint32_t> WindowClient::items(xcb_window_t window, std::string_view property) {
  const auto cookie = xcb_get_property(xcb_, 0, window, atom(property), XCB_ATOM_ANY, 0, 1024);
  const Owned<xcb_get_property_reply_t> reply(xcb_get_property_reply(xcb_, cookie, nullptr));
  return PropertyValue(reply.get()).items();
}

void WindowClient::setAtom(xcb_window_t window, std::string_view property, std::string_view value) {
  setItems(window, property, XCB_ATOM_ATOM, {atom(value)});
}

void WindowClient::setBytes(xcb_window_t window, std::string_view property, std::string_view type,
                            std::string_view bytes) {
  xcb_change_property(xcb_, XCB_PROP_MODE_REPLACE, window, atom(property), atom(type), 8,
                      static_cast<std::uint32_t>(bytes.size()), bytes.data());
  settle();
}

void WindowClient::tellManager(xcb_window_t window, std::string_view message,
                               std::initializer_list<std::uint32_t> data) {
  xcb_client_message_event_t event{};
  event.response_type = XCB_CLIENT_MESSAGE;
  event.format = 32;
  event.window = window;
  event.type = atom(message);
  std::ranges::copy(data, event.data.data32);
  xcb_send_event(xcb_, 0, root_, XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                 reinterpret_cast<const char*>(&event));
  settle();
}

void WindowClient::settle() {
  const Owned<xcb_get_input_focus_reply_t> reply(
      xcb_get_input_focus_reply(xcb_, xcb_get_input_focus(xcb_), nullptr));
}

WindowDesktop::WindowDesktop(Manager manager)
    : loop(linux_desktop::steadyClock()),
      driver(loop),
      connection(open(server.display(), loop)),
      windows(connection),
      client(std::make_unique<WindowClient>(server.display())) {
  if (manager == Manager::none) return;
  manager_ = start({"openbox", "--sm-disable"});
  const xcb_window_t probe = client->create({});
  client->show(probe);
  // The frame tells that the manager has begun its work.
  const auto isManaged = [&] { return find(probe) && find(probe)->bounds->height > 100; };
  if (!eventually(isManaged)) throw std::runtime_error("openbox did not start");
  client->destroy(probe);
  if (!eventually([&] { return !find(probe); })) throw std::runtime_error("openbox stalls");
}

bool WindowDesktop::eventually(const std::function<bool()>& condition) {
  const auto deadline = std::chrono::steady_clock::now() + kPatience;
  while (std::chrono::steady_clock::now() < deadline) {
    refresh();
    if (condition()) return true;
  }
  return false;
}

void WindowDesktop::refresh() {
  bool isDone = false;
  windows.refresh([&] { isDone = true; });
  if (!runUntil([&] { return isDone; })) throw std::runtime_error("no end of a refresh");
}

bool WindowDesktop::runUntil(const std::function<bool()>& condition) {
  return driver.runUntil(condition, kPatience);
}

std::optional<CGWindowDictionary> WindowDesktop::find(xcb_window_t window, CGWindowListOption options) const {
  const auto list = windows.copyWindowInfo(options, kCGNullWindowID);
  if (!list) return std::nullopt;
  const auto isIt = [&](const auto& entry) {
    return entry.number == CGWindowDictionary::Number{std::int64_t{window}};
  };
  const auto found = std::ranges::find_if(*list, isIt);
  return found == list->end() ? std::nullopt : std::optional(*found);
}

std::vector<xcb_window_t> WindowDesktop::order(std::initializer_list<xcb_window_t> wanted) const {
  std::vector<xcb_window_t> numbers;
  for (const auto& entry :
       windows.copyWindowInfo(0, kCGNullWindowID).value_or(std::vector<CGWindowDictionary>())) {
    const auto number = static_cast<xcb_window_t>(std::get<std::int64_t>(*entry.number));
    if (std::ranges::find(wanted, number) != wanted.end()) numbers.push_back(number);
  }
  return numbers;
}

test::Process WindowDesktop::start(std::vector<std::string> command) {
  return test::Process(command, {.environment = {{"DISPLAY", server.display()}}, .isOutputRead = false});
}

}  // namespace tarnix::x11::testing
