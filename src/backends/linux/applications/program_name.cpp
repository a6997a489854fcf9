#include "backends/linux/applications/program_name.h"

#include <algorithm>
#include <array>
#include <span>

namespace tarnix::linux_desktop {
namespace {

using Words = std::span<const std::string>;

// Without the version that may follow: "python3.11" is a "python".
constexpr std::array<std::string_view, 29> kInterpreters = {"bash",
                                                            "busybox",
                                                            "dash",
                                                            "electron",
                                                            "flatpak",
                                                            "gjs",
                                                            "gjs-console",
                                                            "java",
                                                            "ksh",
                                                            "lua",
                                                            "mono",
                                                            "mono-sgen",
                                                            "node",
                                                            "nodejs",
                                                            "perl",
                                                            "php",
                                                            "pkexec",
                                                            "pypy",
                                                            "python",
                                                            "qml",
                                                            "ruby",
                                                            "sh",
                                                            "snap",
                                                            "sudo",
                                                            "wine",
                                                            "wine-preloader",
                                                            "wine64-preloader",
                                                            "wish",
                                                            "zsh"};

bool isLauncher(std::string_view name) { return name == "flatpak" || name == "snap"; }

// Drops `env`, its options and the variables that it sets.
Words withoutEnvironment(Words words) {
  if (words.empty() || baseName(words.front()) != "env") return words;
  do {
    words = words.subspan(1);
  } while (!words.empty() &&
           (words.front().starts_with('-') || words.front().find('=') != std::string::npos));
  return words;
}

// The script or module among an interpreter's arguments. A command in the argument itself is none.
std::string scriptIn(Words arguments) {
  for (const std::string& word : arguments) {
    if (word == "-c" || word == "-e") return {};
    if (!word.starts_with('-')) return word;
  }
  return {};
}

}  // namespace

std::string baseName(std::string_view path) { return std::string(path.substr(path.rfind('/') + 1)); }

bool isInterpreter(std::string_view name) {
  const std::string_view unversioned = name.substr(0, name.find_last_not_of("0123456789.") + 1);
  return std::find(kInterpreters.begin(), kInterpreters.end(), unversioned) != kInterpreters.end();
}

std::string programName(const std::vector<std::string>& command) {
  const Words words = withoutEnvironment(command);
  if (words.empty()) return {};
  const std::string name = baseName(words.front());
  if (!isInterpreter(name)) return name;
  return isLauncher(name) ? std::string() : baseName(scriptIn(words.subspan(1)));
}

std::string scriptAmong(const std::vector<std::string>& command) {
  return command.empty() ? std::string() : scriptIn(Words(command).subspan(1));
}

}  // namespace tarnix::linux_desktop
