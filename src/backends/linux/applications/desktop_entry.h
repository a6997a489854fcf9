#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "backends/linux/files/base_directories.h"
#include "platform/foundation/string.h"

namespace tarnix::linux_desktop {

inline constexpr std::size_t kDesktopEntrySizeLimit = 64 * 1024;  // Bytes.

// An installed application as its desktop entry describes it (Desktop Entry Specification 1.5). Everything in
// it is the word of whoever wrote the file; the command serves to recognise processes and is never run.
struct DesktopEntry {
  std::string id;  // The desktop file id without ".desktop".
  std::filesystem::path file;
  String name;                       // In the user's language; without control characters.
  std::string icon;                  // A name in the icon theme or an absolute path; may be empty.
  std::string windowClass;           // StartupWMClass; may be empty.
  std::string triedProgram;          // TryExec; may be empty.
  std::vector<std::string> command;  // The words of Exec with their field codes; empty when there are none.
  bool isHidden = false;             // Stands for a deleted entry.
  bool isInMenus = true;

  friend bool operator==(const DesktopEntry&, const DesktopEntry&) = default;
};

// The locale's names in entries, best first: "sr_RS.UTF-8@latin" gives "sr_RS@latin", "sr_RS", "sr@latin",
// "sr". None for "C" and "POSIX".
std::vector<std::string> localeNames(std::string_view locale);
// The languages that the environment asks for, best first: those of LANGUAGE, which counts nothing in the
// locales "C" and "POSIX", then the locale for messages.
std::vector<std::string> messageLanguages(const Environment& environment = ::getenv);
// The locale that the environment sets for messages; empty when it sets none.
std::string messageLocale(const Environment& environment = ::getenv);

// Reads the text of an entry; `id` and `file` stay empty. Absent when it describes no application or exceeds
// the limit.
std::optional<DesktopEntry> parseDesktopEntry(std::string_view text, const std::vector<std::string>& locales);

}  // namespace tarnix::linux_desktop
