#include "backends/x11/windows/window_server.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace tarnix::x11 {
namespace {

constexpr std::chrono::milliseconds kPatience{100};

bool isListed(const WindowRecord& window, CGWindowListOption options) {
  if ((options & kCGWindowListOptionOnScreenOnly) != 0 && !window.isOnScreen) return false;
  return (options & kCGWindowListExcludeDesktopElements) == 0 || !window.isDesktopElement;
}

}  // namespace

WindowServer::WindowServer(std::shared_ptr<Connection> connection) : connection_(std::move(connection)) {}

// A look that is under way began before this call and may have missed what the caller wants to see.
void WindowServer::refresh(std::function<void()> done) {
  auto waiter = std::make_shared<Waiter>(Waiter{std::move(done), {}});
  waiter->deadline =
      connection_->loop().scheduleOnce(kPatience, [this, late = waiter.get()] { giveUpOn(late); });
  waiters_.push_back(std::move(waiter));
  fetch_ = std::make_unique<WindowFetch>(connection_,
                                         [this](WindowSnapshot snapshot) { take(std::move(snapshot)); });
}

void WindowServer::take(WindowSnapshot snapshot) {
  snapshot_ = std::move(snapshot);
  fetch_.reset();
  for (const auto& waiter : std::exchange(waiters_, {})) waiter->done();
}

void WindowServer::giveUpOn(const Waiter* late) {
  const auto found = std::ranges::find(waiters_, late, &std::shared_ptr<Waiter>::get);
  const auto waiter = *found;
  waiters_.erase(found);
  waiter->done();
}

std::optional<std::vector<CGWindowDictionary>> WindowServer::copyWindowInfo(CGWindowListOption options,
                                                                            CGWindowID) const {
  if (!snapshot_) return std::nullopt;
  std::vector<CGWindowDictionary> list;
  for (const WindowRecord& window : snapshot_->windows) {
    if (isListed(window, options)) list.push_back(dictionaryOf(window));
  }
  return list;
}

std::optional<int> WindowServer::frontmostProcess() const {
  return snapshot_ ? snapshot_->frontmostProcess : std::nullopt;
}

bool WindowServer::hasWindow(int processIdentifier) const {
  return snapshot_ && std::ranges::any_of(snapshot_->windows, [&](const WindowRecord& window) {
           return window.processIdentifier == processIdentifier && window.isOnScreen;
         });
}

std::vector<WindowClass> WindowServer::windowClasses(int processIdentifier) const {
  std::vector<WindowClass> classes;
  if (!snapshot_) return classes;
  for (const WindowRecord& window : snapshot_->windows) {
    if (window.processIdentifier != processIdentifier || !window.windowClass) continue;
    if (std::ranges::find(classes, *window.windowClass) == classes.end())
      classes.push_back(*window.windowClass);
  }
  return classes;
}

}  // namespace tarnix::x11
