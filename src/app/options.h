#pragma once

#include <optional>
#include <string>

namespace tarnix {

// What the program says and ends with instead of opening its window. A failure belongs on the standard error.
struct CommandLineAnswer {
  std::string text;
  int exitCode = 0;
};

// Absent when the window is to be opened. The options that the toolkit documents for all its programs are let
// through to it; any other argument is an error, with exit code 2 as is the custom.
std::optional<CommandLineAnswer> answerCommandLine(int argc, const char* const* argv);

}  // namespace tarnix
