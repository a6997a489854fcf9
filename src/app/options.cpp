#include "app/options.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace tarnix {
namespace {

constexpr int kUsageError = 2;
constexpr const char* kUsage = "Usage: tarnix [--help] [--version]\n";
constexpr const char* kDescription =
    "Watches the clipboard and shows what was copied since the start, newest first.\n"
    "The history stays in memory and ends with the program.\n";

// Of QGuiApplication, QApplication and the X11 platform, without their dashes. The display is not among them:
// the clipboard is always watched on the one that DISPLAY names.
constexpr std::array<std::string_view, 4> kToolkitFlags{"reverse", "nograb", "dograb", "sync"};
constexpr std::array<std::string_view, 11> kToolkitOptions{
    "platform",        "platformpluginpath", "platformtheme", "plugin",
    "qwindowgeometry", "qwindowicon",        "qwindowtitle",  "session",
    "style",           "stylesheet",         "geometry"};

bool isIn(const auto& names, std::string_view name) { return std::ranges::find(names, name) != names.end(); }

// How many arguments the toolkit's option at `first` takes up; 0 when it knows none such. The toolkit takes
// one dash or two, and a value behind "=" or as the next argument.
int toolkitArguments(int left, const char* const* first) {
  std::string_view name = *first;
  if (!name.starts_with('-')) return 0;
  name.remove_prefix(name.starts_with("--") ? 2 : 1);
  if (isIn(kToolkitFlags, name)) return 1;
  if (isIn(kToolkitOptions, name)) return left > 1 ? 2 : 0;
  return isIn(kToolkitOptions, name.substr(0, name.find('='))) ? 1 : 0;
}

CommandLineAnswer refusal(std::string_view argument) {
  return {"tarnix: the argument \"" + std::string(argument) + "\" is not understood\n" + kUsage, kUsageError};
}

}  // namespace

std::optional<CommandLineAnswer> answerCommandLine(int argc, const char* const* argv) {
  for (int i = 1; i < argc;) {
    const std::string_view argument = argv[i];
    if (argument == "--version") return CommandLineAnswer{"tarnix " TARNIX_VERSION "\n"};
    if (argument == "--help" || argument == "-h")
      return CommandLineAnswer{std::string(kUsage) + kDescription};
    const int taken = toolkitArguments(argc - i, argv + i);
    if (taken == 0) return refusal(argument);
    i += taken;
  }
  return std::nullopt;
}

}  // namespace tarnix
