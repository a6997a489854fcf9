#include "platform/platform.h"

#include <cstdlib>
#include <utility>

namespace tarnix {
namespace {

const Platform* current = nullptr;

}  // namespace

const Platform& Platform::installed() {
  if (current == nullptr) std::abort();
  return *current;
}

PlatformScope::PlatformScope(Platform platform)
    : platform_(std::move(platform)), former_(std::exchange(current, &platform_)) {}

PlatformScope::~PlatformScope() { current = former_; }

// The shared objects that the types below name, so that none of those includes the platform.

RunLoop& RunLoop::main() { return *Platform::installed().mainRunLoop; }

const std::shared_ptr<NSUserDefaults>& NSUserDefaults::standardUserDefaults() {
  return Platform::installed().standardUserDefaults;
}

NSApplication& NSApp() { return *Platform::installed().application; }

std::shared_ptr<NSPasteboard> NSPasteboard::pasteboardWithName(Name name) {
  return Platform::installed().pasteboards.at(static_cast<std::size_t>(name));
}

NSWorkspace& NSWorkspace::sharedWorkspace() { return *Platform::installed().workspace; }

std::vector<NSScreen> NSScreen::screens() { return Platform::installed().screens->screens(); }

std::optional<std::vector<CGWindowDictionary>> CGWindowListCopyWindowInfo(CGWindowListOption options,
                                                                          CGWindowID relativeTo) {
  return Platform::installed().windowServer->copyWindowInfo(options, relativeTo);
}

std::shared_ptr<NSFileManager> NSFileManager::defaultManager() { return Platform::installed().fileManager; }

DispatchQueue& DispatchQueue::global(DispatchQoS) { return *Platform::installed().utilityQueue; }

const NSBundle& NSBundle::mainBundle() {
  static const NSBundle english;
  return current == nullptr ? english : *current->mainBundle;
}

const NSTimeZone& NSTimeZone::systemTimeZone() { return *Platform::installed().timeZone; }

Date Date::now() { return Platform::installed().wallClock(); }

std::shared_ptr<NSUserDefaults> NSUserDefaults::initWithSuiteName(const String& name) {
  return Platform::installed().suites->named(name);
}

}  // namespace tarnix
