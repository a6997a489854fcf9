#include "backends/linux/running_application.h"

#include "backends/linux/program_name.h"
#include "backends/linux/property_list_text.h"

namespace tarnix::linux_desktop {
namespace {

// The short name may be cut; where the program's own name continues it, that is the whole. A process may call
// itself anything, so a name that is no text is none.
std::string programNameOf(const ProcessInfo& process) {
  const std::string program = baseName(process.executable);
  const bool isCut =
      process.commandName.size() == kCommandNameLimit && program.starts_with(process.commandName);
  const std::string& name = isCut ? program : process.commandName;
  return isXMLText(name) ? name : std::string();
}

std::optional<URL> fileURL(const String& path) {
  if (path.empty()) return std::nullopt;
  return URL(path, URL::DirectoryHint::notDirectory);
}

}  // namespace

std::optional<String> RunningApplication::localizedName() const {
  const String name = entry_ ? entry_->name : String(programNameOf(process_));
  return name.empty() ? std::nullopt : std::optional(name);
}

std::optional<URL> RunningApplication::executableURL() const { return fileURL(process_.executable); }

std::optional<URL> RunningApplication::bundleURL() const {
  return entry_ ? fileURL(entry_->file.string()) : std::nullopt;
}

std::optional<String> RunningApplication::bundleIdentifier() const {
  return entry_ ? std::optional<String>(entry_->id) : std::nullopt;
}

}  // namespace tarnix::linux_desktop
