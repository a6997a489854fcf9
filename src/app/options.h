#pragma once

#include <string>

namespace tarnix {

// What the command line asks for.
struct CommandLine {
  enum class Wish { window, answer, refusal };
  Wish wish = Wish::window;
  // What to print and end with: an answer, or what is wrong with the command line and how to use it.
  std::string text;
};

// Takes the program's own options, and those that the toolkit documents for every program with a window, with
// one dash or two, which are left to it. Refuses anything else.
CommandLine readCommandLine(int argc, const char* const* argv);

}  // namespace tarnix
