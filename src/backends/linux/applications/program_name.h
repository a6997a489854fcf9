#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tarnix::linux_desktop {

// What is behind the last slash.
std::string baseName(std::string_view path);

// Whether a program of this name runs other programs, so that the name identifies none of them: shells,
// language runtimes, sandboxes.
bool isInterpreter(std::string_view name);

// The name by which the program that a command runs can be recognised: the base name of its first word, or of
// the script that an interpreter is given. Variables that `env` sets are passed over. Empty when nothing
// identifies it.
std::string programName(const std::vector<std::string>& command);

// The script among an interpreter's arguments, the interpreter being the first of them, as it is written
// there. Empty when there is none, as with a command in the argument itself.
std::string scriptAmong(const std::vector<std::string>& command);

}  // namespace tarnix::linux_desktop
