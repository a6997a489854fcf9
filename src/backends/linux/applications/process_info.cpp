#include "backends/linux/applications/process_info.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <charconv>
#include <string_view>
#include <system_error>

#include "backends/linux/files/file_descriptor.h"
#include "backends/linux/files/key_file.h"
#include "platform/foundation/split.h"

namespace tarnix::linux_desktop {
namespace {

using std::filesystem::path;

// Bytes. Longer files are cut.
constexpr std::size_t kShortLimit = 4096;
constexpr std::size_t kLongLimit = 256 * 1024;
constexpr std::size_t kArgumentLimit = 64;

// Entries that each end with `terminator`.
std::vector<std::string_view> entriesIn(std::string_view text, char terminator) {
  auto entries = split(text, terminator);
  if (entries.back().empty()) entries.pop_back();
  return entries;
}

std::string readBeginning(const path& file, std::size_t limit) {
  const FileDescriptor descriptor(::open(file.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  return descriptor ? readUpTo(descriptor, limit).value_or("") : std::string();
}

struct Status {
  std::string commandName;
  std::uint64_t startTime = 0;
};

// The command name stands in brackets and may itself hold brackets and blanks, so the fields are counted from
// the last bracket: the state is the third, the start time the 22nd. A process that has ended and waits for
// its parent is none.
std::optional<Status> statusOf(const path& process) {
  const std::string text = readBeginning(process / "stat", kShortLimit);
  const std::size_t open = text.find('('), close = text.rfind(')');
  if (open == std::string::npos || close == std::string::npos || close < open || close + 2 > text.size())
    return std::nullopt;
  const auto fields = split(std::string_view(text).substr(close + 2), ' ');
  constexpr std::size_t kState = 0, kStartTime = 19;
  if (fields.size() <= kStartTime || fields[kState] == "Z" || fields[kState] == "X") return std::nullopt;
  Status status{text.substr(open + 1, close - open - 1), 0};
  const std::string_view number = fields[kStartTime];
  const auto [rest, error] = std::from_chars(number.data(), number.data() + number.size(), status.startTime);
  return error == std::errc() ? std::optional(status) : std::nullopt;
}

std::string executableOf(const path& process) {
  constexpr std::string_view kReplaced = " (deleted)";
  std::error_code error;
  std::string executable = std::filesystem::read_symlink(process / "exe", error).string();
  if (executable.ends_with(kReplaced)) executable.resize(executable.size() - kReplaced.size());
  return executable;
}

std::vector<std::string> argumentsOf(const path& process) {
  const std::string text = readBeginning(process / "cmdline", kLongLimit);
  const auto parts = entriesIn(text, '\0');
  return {parts.begin(), parts.begin() + static_cast<std::ptrdiff_t>(std::min(parts.size(), kArgumentLimit))};
}

// Lines are `NUMBER:CONTROLLERS:PATH`; the unified hierarchy has no controllers.
std::vector<std::string> controlGroupsOf(const path& process) {
  const std::string text = readBeginning(process / "cgroup", kLongLimit);
  std::vector<std::string> groups;
  for (const std::string_view line : entriesIn(text, '\n')) {
    const std::size_t first = line.find(':'), second = line.find(':', first + 1);
    if (first == std::string_view::npos || second == std::string_view::npos) continue;
    const std::string_view controllers = line.substr(first + 1, second - first - 1);
    const bool isUsed = controllers.empty() || controllers == "name=systemd" || controllers == "freezer";
    if (isUsed) groups.emplace_back(line.substr(second + 1));
  }
  return groups;
}

// Flatpak puts its description of the sandbox where a process inside cannot change it, at the root of the
// sandbox's own file system. A path below "root" is resolved inside the sandbox, so a link there could lead
// back out of it.
std::string sandboxApplicationOf(const path& process) {
  const FileDescriptor root(::open((process / "root").c_str(), O_DIRECTORY | O_NONBLOCK | O_CLOEXEC));
  if (!root) return {};
  constexpr int kFlags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
  const FileDescriptor file(::openat(root.get(), ".flatpak-info", kFlags));
  struct stat status {};
  if (!file || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) return {};
  const std::string text = readUpTo(file, kLongLimit).value_or("");
  return std::string(valueOfKey(text, "Application", "name").value_or(""));
}

// A note of the desktop's launcher is inherited by every descendant; it counts where it names the process
// itself.
void takeEnvironment(const path& process, ProcessInfo& info) {
  const std::string text = readBeginning(process / "environ", kLongLimit);
  const auto variables = entriesIn(text, '\0');
  const auto valueOf = [&](std::string_view name) {
    for (const std::string_view variable : variables) {
      if (variable.starts_with(name)) return std::string(variable.substr(name.size()));
    }
    return std::string();
  };
  const bool isOwn = valueOf("GIO_LAUNCHED_DESKTOP_FILE_PID=") == std::to_string(info.processIdentifier);
  if (isOwn) info.launchedEntry = valueOf("GIO_LAUNCHED_DESKTOP_FILE=");
  info.hintedEntry = valueOf("BAMF_DESKTOP_FILE_HINT=");
}

}  // namespace

std::optional<ProcessInfo> ProcessTable::process(int processIdentifier) const {
  if (processIdentifier <= 0) return std::nullopt;
  const path process = root_ / std::to_string(processIdentifier);
  const std::optional<Status> before = statusOf(process);
  if (!before) return std::nullopt;
  ProcessInfo info;
  info.processIdentifier = processIdentifier;
  info.startTime = before->startTime;
  info.commandName = before->commandName;
  info.executable = executableOf(process);
  std::error_code error;
  info.workingDirectory = std::filesystem::read_symlink(process / "cwd", error).string();
  info.arguments = argumentsOf(process);
  info.controlGroups = controlGroupsOf(process);
  info.sandboxApplication = sandboxApplicationOf(process);
  takeEnvironment(process, info);
  const std::optional<Status> after = statusOf(process);
  return after && after->startTime == info.startTime ? std::optional(info) : std::nullopt;
}

}  // namespace tarnix::linux_desktop
