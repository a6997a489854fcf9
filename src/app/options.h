#pragma once

#include <optional>
#include <string>

namespace tarnix {

// The text that the program is to print and end with, where the command line asks for one instead of the
// window. Everything else on it is left to the toolkit.
std::optional<std::string> answerCommandLine(int argc, const char* const* argv);

}  // namespace tarnix
