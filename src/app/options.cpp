#include "app/options.h"

#include <string_view>

namespace tarnix {

std::optional<std::string> answerCommandLine(int argc, const char* const* argv) {
  for (int i = 1; i < argc; ++i) {
    const std::string_view argument = argv[i];
    if (argument == "--version") return "tarnix " TARNIX_VERSION "\n";
    if (argument == "--help" || argument == "-h") {
      return "Usage: tarnix [--help] [--version]\n"
             "Watches the clipboard and shows what was copied since the start, newest first.\n"
             "The history stays in memory and ends with the program.\n";
    }
  }
  return std::nullopt;
}

}  // namespace tarnix
