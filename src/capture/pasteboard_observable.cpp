#include "capture/pasteboard_observable.h"

#include <chrono>
#include <utility>

#include "capture/window_info.h"
#include "platform/combine/timer_publisher.h"

namespace tarnix {
namespace {

using ContentsInfo = NSPasteboard::ContentsInfo;
using namespace std::chrono_literals;

ContentsInfo freshGeneration() {
  ContentsInfo info;
  info.id = UUID::random();
  info.created = Date::now();
  return info;
}

// The writer names itself by bundle identifier, or by an empty marker asks not to be looked for.
ContentsInfo markedGeneration(const String& marker) {
  auto info = freshGeneration();
  if (marker.empty()) return info;
  info.sourceAppBundleIdentifier = marker;
  info.sourceAppURL = NSWorkspace::sharedWorkspace().URLForApplicationWithBundleIdentifier(marker);
  return info;
}

ContentsInfo attributedGeneration() {
  auto info = freshGeneration();
  if (const auto app = WindowInfo::frontUserApp()) {
    info.sourceAppBundleIdentifier = app->bundleIdentifier;
    info.sourceAppURL = app->url;
  }
  return info;
}

std::optional<int> changeCountOf(const std::weak_ptr<NSPasteboard>& observed) {
  const auto pasteboard = observed.lock();
  return pasteboard ? std::optional(pasteboard->changeCount()) : std::nullopt;
}

std::optional<String> markerOf(const std::weak_ptr<NSPasteboard>& observed) {
  const auto pasteboard = observed.lock();
  return pasteboard ? pasteboard->stringForType(NSPasteboard::sourceType()) : std::nullopt;
}

// Nobody knows who left what the poll finds first, unless it is marked.
std::optional<ContentsInfo> nextGeneration(const std::weak_ptr<NSPasteboard>& observed, bool& isFirstEvent) {
  const bool isFirst = std::exchange(isFirstEvent, false);
  if (const auto marker = markerOf(observed)) return markedGeneration(*marker);
  if (isFirst) return std::nullopt;
  return attributedGeneration();
}

}  // namespace

Publisher<ContentsInfo> contentsInfoPublisher(const std::shared_ptr<NSPasteboard>& pasteboard) {
  const std::weak_ptr<NSPasteboard> observed = pasteboard;
  const auto isFirstEvent = std::make_shared<bool>(true);
  return Timer::publish(200ms, {.tolerance = 100ms, .mode = RunLoop::Mode::common})
      .prepend(Date::now())
      .compactMap([observed](Date) { return changeCountOf(observed); })
      .removeDuplicates()
      .compactMap([observed, isFirstEvent](int) { return nextGeneration(observed, *isFirstEvent); });
}

NSPasteboard::Observable::Observable(std::shared_ptr<NSPasteboard> pasteboard)
    : pasteboard_(this, std::move(pasteboard)) {
  start();
}

void NSPasteboard::Observable::setPasteboard(std::shared_ptr<NSPasteboard> pasteboard) {
  pasteboard_.set(std::move(pasteboard));
  start();
}

void NSPasteboard::Observable::start() {
  cancellable_ =
      contentsInfoPublisher(pasteboard()).sink([this](const ContentsInfo& info) { info_.set(info); });
}

}  // namespace tarnix
