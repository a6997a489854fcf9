#include "capture/running_application_title.h"

#include <string>

namespace tarnix {
namespace {

String baseName(const URL& url) { return url.deletingPathExtension().lastPathComponent(); }

}  // namespace

String localizedTitle(const NSRunningApplication& application) {
  if (const auto name = application.localizedName()) return *name;
  if (const auto executable = application.executableURL()) return baseName(*executable);
  if (const auto bundle = application.bundleURL()) return baseName(*bundle);
  if (const auto identifier = application.bundleIdentifier()) return *identifier;
  if (application.processIdentifier() == -1) return "<Unknown>";
  return "PID" + std::to_string(application.processIdentifier());
}

}  // namespace tarnix
