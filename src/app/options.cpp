#include "app/options.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace tarnix {
namespace {

using Wish = CommandLine::Wish;

constexpr const char* kUsage =
    "Usage: tarnix [--help] [--version]\n"
    "Watches the clipboard and shows what was copied since the start, newest first.\n"
    "The history stays in memory and ends with the program.\n";

// Of QGuiApplication and QApplication; those of the first list are followed by a value.
constexpr std::array<std::string_view, 15> kToolkitOptionsWithValue = {
    "display",       "platform",    "platformpluginpath",
    "platformtheme", "plugin",      "qwindowgeometry",
    "geometry",      "qwindowicon", "icon",
    "qwindowtitle",  "title",       "session",
    "style",         "stylesheet",  "fontengine"};
constexpr std::array<std::string_view, 2> kToolkitOptions = {"reverse", "widgetcount"};

template <typename Names>
bool contains(const Names& names, std::string_view name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

// How many arguments from this one on are the toolkit's; none when it does not know it.
int toolkitArguments(std::string_view argument) {
  if (!argument.starts_with('-')) return 0;
  argument.remove_prefix(argument.starts_with("--") ? 2 : 1);
  const std::size_t sign = argument.find('=');
  const std::string_view name = argument.substr(0, sign);
  if (contains(kToolkitOptionsWithValue, name)) return sign == std::string_view::npos ? 2 : 1;
  return contains(kToolkitOptions, name) && sign == std::string_view::npos ? 1 : 0;
}

CommandLine refusal(const std::string& complaint) {
  return {Wish::refusal, "tarnix: " + complaint + "\n" + kUsage};
}

}  // namespace

CommandLine readCommandLine(int argc, const char* const* argv) {
  for (int i = 1; i < argc;) {
    const std::string_view argument = argv[i];
    if (argument == "--version") return {Wish::answer, "tarnix " TARNIX_VERSION "\n"};
    if (argument == "--help" || argument == "-h") return {Wish::answer, kUsage};
    const int known = toolkitArguments(argument);
    if (known == 0) return refusal("unknown argument \"" + std::string(argument) + '"');
    if (i + known > argc) return refusal(std::string(argument) + " wants a value");
    i += known;
  }
  return {};
}

}  // namespace tarnix
