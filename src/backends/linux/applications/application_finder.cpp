#include "backends/linux/applications/application_finder.h"

#include <algorithm>
#include <charconv>
#include <functional>
#include <optional>
#include <span>
#include <string_view>

#include "backends/linux/applications/program_name.h"
#include "platform/foundation/split.h"

namespace tarnix::linux_desktop {
namespace {

using Entry = DesktopEntries::Entry;
using IdsOfUnit = std::vector<std::string> (*)(std::string_view);

std::string joined(std::span<const std::string_view> parts) {
  std::string text;
  for (const std::string_view part : parts) {
    if (!text.empty()) text += '-';
    text += part;
  }
  return text;
}

bool dropSuffix(std::string_view& text, std::string_view suffix) {
  if (!text.ends_with(suffix)) return false;
  text.remove_suffix(suffix.size());
  return true;
}

// Resolves the `\xHH` of unit names (systemd.unit, "String escaping for inclusion in unit names").
std::string unescapedUnit(std::string_view name) {
  std::string result;
  for (std::size_t i = 0; i < name.size(); ++i) {
    unsigned char code = 0;
    const char* const digits = name.data() + i + 2;
    const bool isEscape = name.substr(i, 2) == "\\x" && i + 4 <= name.size() &&
                          std::from_chars(digits, digits + 2, code, 16).ptr == digits + 2;
    result.push_back(isEscape ? static_cast<char>(code) : name[i]);
    if (isEscape) i += 3;
  }
  return result;
}

std::string lowered(std::string text) {
  for (char& character : text) {
    if (character >= 'A' && character <= 'Z') character = static_cast<char>(character - 'A' + 'a');
    if (character == ' ') character = '-';
  }
  return text;
}

// The parts from each one to the last, as the text of an id.
void appendTails(std::span<const std::string_view> parts, std::vector<std::string>& ids) {
  for (std::size_t first = 0; first < parts.size(); ++first) {
    ids.push_back(unescapedUnit(joined(parts.subspan(first))));
  }
}

Entry firstOf(DesktopEntries& entries, const std::vector<std::string>& ids) {
  for (const std::string& id : ids) {
    if (Entry entry = id.empty() ? nullptr : entries.withIdentifier(id)) return entry;
  }
  return nullptr;
}

// The innermost unit counts: those around it belong to whatever started the process's unit.
Entry fromUnits(DesktopEntries& entries, const ProcessInfo& process, IdsOfUnit idsOfUnit) {
  for (const std::string& group : process.controlGroups) {
    const auto units = split(group, '/');
    for (auto unit = units.rbegin(); unit != units.rend(); ++unit) {
      if (Entry entry = firstOf(entries, idsOfUnit(*unit))) return entry;
    }
  }
  return nullptr;
}

// The instance comes first: a browser's web applications share the class of the browser.
Entry fromWindow(DesktopEntries& entries, const WindowClass& window) {
  for (const std::string& name : {window.instance, window.className}) {
    if (Entry entry = name.empty() ? nullptr : entries.withWindowClass(name)) return entry;
  }
  return firstOf(entries,
                 {window.instance, window.className, lowered(window.instance), lowered(window.className)});
}

Entry fromWindows(DesktopEntries& entries, const std::vector<WindowClass>& windows) {
  for (const WindowClass& window : windows) {
    if (Entry entry = fromWindow(entries, window)) return entry;
  }
  return nullptr;
}

// How many fixed words of the entry's command the process was given. Absent when it lacks one.
std::optional<std::size_t> agreement(const DesktopEntry& entry, const ProcessInfo& process) {
  std::size_t count = 0;
  for (const std::string& word : entry.command) {
    if (!word.starts_with('-')) continue;
    const auto found = std::find(process.arguments.begin(), process.arguments.end(), word);
    if (found == process.arguments.end()) return std::nullopt;
    ++count;
  }
  return count;
}

// Several entries may run one program with different options. The one whose options the process has is the
// best, else one that is called like the program.
Entry bestOf(const std::vector<Entry>& candidates, const ProcessInfo& process, const std::string& name) {
  Entry best;
  std::size_t bestCount = 0;
  for (const Entry& candidate : candidates) {
    const std::optional<std::size_t> count = agreement(*candidate, process);
    if (!count || (best && *count < bestCount) || (best && *count == bestCount && candidate->id != name))
      continue;
    best = candidate;
    bestCount = *count;
  }
  return best || candidates.empty() ? best : candidates.front();
}

// A process that hides its program from us still has its short name, which may be cut.
std::string programOf(const ProcessInfo& process) {
  if (process.executable.empty()) return isInterpreter(process.commandName) ? "" : process.commandName;
  const std::string name = baseName(process.executable);
  if (!isInterpreter(name)) return name;
  std::vector<std::string> command = process.arguments;
  if (command.empty()) return {};
  command.front() = process.executable;
  return programName(command);
}

Entry fromProgram(DesktopEntries& entries, const ProcessInfo& process) {
  const std::string name = programOf(process);
  return name.empty() ? nullptr : bestOf(entries.withProgram(name), process, name);
}

Entry fromFile(DesktopEntries& entries, const std::string& file) {
  return file.empty() ? nullptr : entries.withFile(file);
}

}  // namespace

Entry findApplication(DesktopEntries& entries, const ProcessInfo& process,
                      const std::vector<WindowClass>& windows) {
  // Programs inside a sandbox have names that mean nothing outside it.
  if (!process.sandboxApplication.empty()) return entries.withIdentifier(process.sandboxApplication);
  const std::function<Entry()> evidence[] = {
      [&] { return fromUnits(entries, process, applicationIdsOfSnap); },
      [&] { return fromWindows(entries, windows); },
      [&] { return fromUnits(entries, process, applicationIdsOfUnit); },
      [&] { return fromFile(entries, process.launchedEntry); },
      [&] { return fromProgram(entries, process); },
      [&] { return fromFile(entries, process.hintedEntry); },
  };
  for (const auto& look : evidence) {
    if (Entry entry = look()) return entry;
  }
  return nullptr;
}

Entry findOwnApplication(DesktopEntries& entries, const ProcessInfo& process) {
  if (!process.sandboxApplication.empty()) return entries.withIdentifier(process.sandboxApplication);
  if (Entry entry = fromUnits(entries, process, applicationIdsOfSnap)) return entry;
  if (Entry entry = fromFile(entries, process.launchedEntry)) return entry;
  return fromProgram(entries, process);
}

std::vector<std::string> applicationIdsOfUnit(std::string_view unit) {
  const bool isSlice = dropSuffix(unit, ".slice");
  const bool isScope = !isSlice && dropSuffix(unit, ".scope");
  if (!isSlice && !isScope && !dropSuffix(unit, ".service")) return {};
  if (!unit.starts_with("app-") && !unit.starts_with("dbus-")) return {};
  if (!isSlice && !isScope) unit = unit.substr(0, unit.rfind('@'));
  dropSuffix(unit, "-autostart");
  const auto parts = split(unit.substr(unit.find('-') + 1), '-');
  std::vector<std::string> ids;
  if (isScope || isSlice) appendTails(std::span(parts).first(parts.size() - 1), ids);
  // A slice may do without the random part.
  if (!isScope) appendTails(parts, ids);
  return ids;
}

std::vector<std::string> applicationIdsOfSnap(std::string_view unit) {
  constexpr std::string_view kPrefix = "snap.";
  constexpr std::size_t kUUIDSize = 36;
  if (!unit.starts_with(kPrefix)) return {};
  const auto parts = split(unit.substr(kPrefix.size()), '.');
  if (parts.size() < 2) return {};
  // The application may be followed by a hyphen and a random UUID.
  std::vector<std::string> ids = {std::string(parts[0]) + "_" + std::string(parts[1])};
  if (parts[1].size() > kUUIDSize + 1) ids.push_back(ids[0].substr(0, ids[0].size() - kUUIDSize - 1));
  return ids;
}

}  // namespace tarnix::linux_desktop
