#include "backends/x11/windows/window_fetch.h"

#include <unistd.h>
#include <xcb/xcb.h>

#include <algorithm>
#include <array>
#include <ranges>
#include <utility>

#include "backends/x11/connection/client_process.h"

namespace tarnix::x11 {
namespace {

std::string hostName() {
  std::array<char, 256> name{};
  return gethostname(name.data(), name.size() - 1) == 0 ? name.data() : std::string();
}

std::vector<xcb_window_t> childrenIn(const xcb_query_tree_reply_t* reply) {
  if (reply == nullptr) return {};
  const xcb_window_t* first = xcb_query_tree_children(reply);
  return {first, first + xcb_query_tree_children_length(reply)};
}

}  // namespace

WindowFetch::WindowFetch(std::shared_ptr<Connection> connection, Done done)
    : connection_(std::move(connection)), done_(std::move(done)), batch_(connection_) {
  desktop_.hostName = hostName();
  askDesktop();
}

void WindowFetch::askDesktop() {
  const xcb_window_t root = connection_->screen().root;
  batch_.askProperty(root, "_NET_SUPPORTING_WM_CHECK", [this](PropertyValue value) {
    managerWindow_ = value.firstItem().value_or(XCB_WINDOW_NONE);
  });
  batch_.askProperty(root, "_NET_CLIENT_LIST_STACKING",
                     [this](PropertyValue value) { clientList_ = std::move(value); });
  batch_.askProperty(root, "_NET_CURRENT_DESKTOP",
                     [this](PropertyValue value) { desktop_.currentDesktop = value.firstItem(); });
  batch_.askProperty(root, "_NET_ACTIVE_WINDOW", [this](PropertyValue value) {
    activeWindow_ = value.firstItem().value_or(XCB_WINDOW_NONE);
  });
  batch_.ask<xcb_get_input_focus_reply_t>(xcb_get_input_focus(connection_->xcb()), [this](const auto* reply) {
    if (reply != nullptr) focus_ = reply->focus;
  });
  batch_.then([this] { askWindowManager(); });
}

// What a window manager leaves behind when it ends is still there; its own window is not.
void WindowFetch::askWindowManager() {
  if (managerWindow_ != XCB_WINDOW_NONE) {
    batch_.askProperty(managerWindow_, "_NET_SUPPORTING_WM_CHECK", [this](PropertyValue value) {
      isManaged_ = value.firstItem() == managerWindow_ && !clientList_.isAbsent();
    });
  }
  batch_.then([this] { chooseList(); });
}

void WindowFetch::chooseList() {
  if (isManaged_) return askWindows(clientList_.items());
  askTopLevels();
}

void WindowFetch::askTopLevels() {
  const auto cookie = xcb_query_tree(connection_->xcb(), connection_->screen().root);
  const auto children = std::make_shared<std::vector<xcb_window_t>>();
  batch_.ask<xcb_query_tree_reply_t>(cookie,
                                     [children](const auto* reply) { *children = childrenIn(reply); });
  batch_.then([this, children] { askFrames(*children); });
}

void WindowFetch::askFrames(const std::vector<xcb_window_t>& windows) {
  topLevels_.resize(windows.size());
  for (std::size_t index = 0; index < windows.size(); ++index) {
    TopLevel& topLevel = topLevels_[index];
    topLevel.id = windows[index];
    const auto attributes = xcb_get_window_attributes(connection_->xcb(), topLevel.id);
    batch_.ask<xcb_get_window_attributes_reply_t>(attributes, [&topLevel](const auto* reply) {
      if (reply == nullptr) return;
      topLevel.isVisible =
          reply->map_state == XCB_MAP_STATE_VIEWABLE && reply->_class == XCB_WINDOW_CLASS_INPUT_OUTPUT;
      topLevel.isLeftToManagers = reply->override_redirect == 0;
    });
    batch_.ask<xcb_query_tree_reply_t>(
        xcb_query_tree(connection_->xcb(), topLevel.id),
        [&topLevel](const auto* reply) { topLevel.children = childrenIn(reply); });
  }
  batch_.then([this] { askFramedWindows(); });
}

void WindowFetch::askFramedWindows() {
  for (TopLevel& topLevel : topLevels_) {
    if (!topLevel.isVisible) continue;
    for (const xcb_window_t child : topLevel.children) {
      batch_.askProperty(child, "WM_STATE", [&topLevel, child](PropertyValue value) {
        if (!value.isAbsent()) topLevel.managedChildren.push_back(child);
      });
    }
  }
  batch_.then([this] { askWindows(unmanagedList()); });
}

// Where no window manager tells the list: of each window at the top what it frames, or else the window itself
// unless it is a menu or the like.
std::vector<xcb_window_t> WindowFetch::unmanagedList() const {
  std::vector<xcb_window_t> list;
  for (const TopLevel& topLevel : topLevels_) {
    if (!topLevel.isVisible) continue;
    const auto& framed = topLevel.managedChildren;
    list.insert(list.end(), framed.begin(), framed.end());
    if (framed.empty() && topLevel.isLeftToManagers) list.push_back(topLevel.id);
  }
  return list;
}

void WindowFetch::askWindows(const std::vector<xcb_window_t>& backToFront) {
  windows_.resize(backToFront.size());
  for (std::size_t index = 0; index < windows_.size(); ++index) {
    windows_[index].id = backToFront[windows_.size() - 1 - index];
    askWindow(windows_[index]);
  }
  batch_.then([this] { finish(); });
}

void WindowFetch::askWindow(WindowAnswers& window) {
  xcb_connection_t* xcb = connection_->xcb();
  batch_.ask<xcb_get_window_attributes_reply_t>(
      xcb_get_window_attributes(xcb, window.id), [&window](const auto* reply) {
        window.isViewable = reply != nullptr && reply->map_state == XCB_MAP_STATE_VIEWABLE;
      });
  batch_.ask<xcb_get_geometry_reply_t>(xcb_get_geometry(xcb, window.id), [&window](const auto* reply) {
    if (reply != nullptr) window.size = {double(reply->width), double(reply->height)};
  });
  batch_.ask<xcb_translate_coordinates_reply_t>(
      xcb_translate_coordinates(xcb, window.id, connection_->screen().root, 0, 0),
      [&window](const auto* reply) {
        if (reply != nullptr) window.origin = {double(reply->dst_x), double(reply->dst_y)};
      });
  for (const std::string_view name : describingProperties()) {
    batch_.askProperty(window.id, name, [&window, name](PropertyValue value) {
      if (!value.isAbsent()) window.properties[name] = std::move(value);
    });
  }
  askProcess(batch_, *connection_, window.id, [&window](auto process) { window.localProcess = process; });
}

void WindowFetch::finish() {
  WindowSnapshot snapshot;
  for (const WindowAnswers& window : windows_) {
    auto record = describe(window, desktop_, connection_->atoms());
    if (record) snapshot.windows.push_back(*std::move(record));
  }
  snapshot.frontmostProcess = frontmostProcess(snapshot.windows);
  const Done done = std::move(done_);
  done(std::move(snapshot));
}

// Without a window manager the keyboard may belong to any part of a program; all parts of one client have the
// same upper bits.
std::optional<int> WindowFetch::frontmostProcess(const std::vector<WindowRecord>& windows) const {
  const xcb_window_t wanted = isManaged_ ? activeWindow_ : focus_;
  const xcb_window_t part = isManaged_ ? 0 : xcb_get_setup(connection_->xcb())->resource_id_mask;
  const auto isWanted = [&](const WindowRecord& window) { return (window.id & ~part) == (wanted & ~part); };
  const auto found = std::ranges::find_if(windows, isWanted);
  return found == windows.end() ? std::nullopt : found->processIdentifier;
}

}  // namespace tarnix::x11
