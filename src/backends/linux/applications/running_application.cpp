#include "backends/linux/applications/running_application.h"

#include <filesystem>
#include <system_error>

#include "backends/linux/applications/program_name.h"
#include "backends/linux/files/property_list_text.h"

namespace tarnix::linux_desktop {
namespace {

// The short name may be cut; where the program's own name continues it, that is the whole. A process may call
// itself anything, so a name that is no text is none. An interpreter's name says less than its script's.
std::string programNameOf(const ProcessInfo& process, const std::string& file) {
  if (isInterpreter(process.commandName) && file != process.executable) return baseName(file);
  const std::string program = baseName(process.executable);
  const bool isCut =
      process.commandName.size() == kCommandNameLimit && program.starts_with(process.commandName);
  const std::string& name = isCut ? program : process.commandName;
  return isXMLText(name) ? name : std::string();
}

std::optional<URL> fileURL(const String& path) {
  if (path.empty() || !isXMLText(path)) return std::nullopt;
  return URL(path, URL::DirectoryHint::notDirectory);
}

std::string scriptOf(const ProcessInfo& process) {
  const std::string script = scriptAmong(process.arguments);
  if (script.empty() || process.workingDirectory.empty()) return {};
  const auto path = (std::filesystem::path(process.workingDirectory) / script).lexically_normal();
  std::error_code error;
  return isXMLText(path.string()) && std::filesystem::is_regular_file(path, error) ? path.string() : "";
}

}  // namespace

std::string RunningApplication::programOf(const ProcessInfo& process) {
  if (!isInterpreter(baseName(process.executable))) return process.executable;
  const std::string script = scriptOf(process);
  return script.empty() ? process.executable : script;
}

std::optional<String> RunningApplication::localizedName() const {
  const String name = entry_ ? entry_->name : String(programNameOf(process_, program_));
  return name.empty() ? std::nullopt : std::optional(name);
}

std::optional<URL> RunningApplication::executableURL() const { return fileURL(process_.executable); }

std::optional<URL> RunningApplication::bundleURL() const {
  return fileURL(entry_ ? entry_->file.string() : program_);
}

std::optional<String> RunningApplication::bundleIdentifier() const {
  if (entry_) return String(entry_->id);
  if (program_.empty() || !isXMLText(program_)) return std::nullopt;
  if (!process_.sandboxApplication.empty()) return String(process_.sandboxApplication);
  return String(std::string(kProgramPrefix) + program_);
}

}  // namespace tarnix::linux_desktop
