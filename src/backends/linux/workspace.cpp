#include "backends/linux/workspace.h"

#include "backends/linux/running_application.h"

namespace tarnix::linux_desktop {

std::shared_ptr<NSRunningApplication> Workspace::frontmostApplication() const {
  const std::optional<int> process = frontmostProcess_ ? frontmostProcess_() : std::nullopt;
  return process ? runningApplication(*process) : nullptr;
}

std::shared_ptr<NSRunningApplication> Workspace::runningApplication(int processIdentifier) const {
  std::optional<ProcessInfo> process = processes_.process(processIdentifier);
  if (!process) return nullptr;
  const auto windows = windowClasses_ ? windowClasses_(processIdentifier) : std::vector<WindowClass>();
  DesktopEntries::Entry entry = findApplication(*entries_, *process, windows);
  return std::make_shared<RunningApplication>(std::move(*process), std::move(entry));
}

std::optional<URL> Workspace::URLForApplicationWithBundleIdentifier(const String& identifier) const {
  const DesktopEntries::Entry entry = entries_->withIdentifier(identifier);
  if (!entry) return std::nullopt;
  return URL(entry->file.string(), URL::DirectoryHint::notDirectory);
}

std::optional<String> Workspace::iconName(const String& bundleIdentifier) const {
  const DesktopEntries::Entry entry = entries_->withIdentifier(bundleIdentifier);
  return entry && !entry->icon.empty() ? std::optional<String>(entry->icon) : std::nullopt;
}

}  // namespace tarnix::linux_desktop
