#include "backends/linux/applications/workspace.h"

#include <filesystem>
#include <system_error>

#include "backends/linux/applications/running_application.h"

namespace tarnix::linux_desktop {
namespace {

std::optional<URL> programURL(const std::filesystem::path& program) {
  std::error_code error;
  if (!program.is_absolute() || !std::filesystem::is_regular_file(program, error)) return std::nullopt;
  return URL(program.string(), URL::DirectoryHint::notDirectory);
}

}  // namespace

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

Workspace::Identity Workspace::identityOf(int processIdentifier) const {
  auto process = processes_.process(processIdentifier);
  if (!process) return [](bool) { return std::optional<String>(); };
  return [entries = entries_, classesOf = windowClasses_, process = *std::move(process)](bool hasWindows) {
    const auto windows = classesOf ? classesOf(process.processIdentifier) : std::vector<WindowClass>();
    auto entry =
        hasWindows ? findApplication(*entries, process, windows) : findOwnApplication(*entries, process);
    const bool isApplication = hasWindows || entry || !process.sandboxApplication.empty();
    return isApplication ? RunningApplication(process, std::move(entry)).bundleIdentifier() : std::nullopt;
  };
}

std::optional<URL> Workspace::URLForApplicationWithBundleIdentifier(const String& identifier) const {
  if (identifier.hasPrefix(kProgramPrefix))
    return programURL(identifier.view().substr(kProgramPrefix.size()));
  const DesktopEntries::Entry entry = entries_->withIdentifier(identifier);
  if (!entry) return std::nullopt;
  return URL(entry->file.string(), URL::DirectoryHint::notDirectory);
}

NSImage Workspace::iconForFile(const String& path) const {
  const DesktopEntries::Entry entry = entries_->withFile(path.str());
  if (!entry || entry->icon.empty()) return {{}, path};
  return {{String(entry->icon)}, path};
}

std::optional<String> Workspace::localizedName(const URL& url) const {
  const DesktopEntries::Entry entry = entries_->withFile(url.path().str());
  return entry ? std::optional(entry->name) : std::nullopt;
}

void Workspace::activateFileViewerSelectingURLs(const std::vector<URL>& urls) const {
  if (urls.empty()) return;
  const std::filesystem::path folder = std::filesystem::path(urls.front().path().str()).parent_path();
  const auto openFolder = [opener = std::weak_ptr(opener_), folder] {
    const URL url(String(folder.string()), URL::DirectoryHint::isDirectory);
    if (const auto present = opener.lock()) present->open(url.absoluteString().str());
  };
  if (!fileManager_) return openFolder();
  std::vector<String> texts;
  for (const URL& url : urls) texts.push_back(url.absoluteString());
  fileManager_(texts, openFolder);
}

}  // namespace tarnix::linux_desktop
