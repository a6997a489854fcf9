#pragma once

#include <cstdlib>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

// Where the session keeps what, by the XDG Base Directory Specification. A relative path in a variable is
// ignored, as it asks.
namespace tarnix::linux_desktop {

// Gives the value of an environment variable, null when it is not set.
using Environment = std::function<const char*(const char* name)>;

// The file of the program's settings: `tarnix/settings.plist` in the configuration home. Absent when the
// environment names no home.
std::optional<std::filesystem::path> defaultSettingsFile(const Environment& environment = ::getenv);

// The file of a suite of settings beside them: `tarnix/suites/NAME.plist`. `name` is one that
// `DefaultsSuites` takes.
std::optional<std::filesystem::path> suiteSettingsFile(const std::string& name,
                                                       const Environment& environment = ::getenv);

// The directories of desktop entries, the more important first. They need not exist.
std::vector<std::filesystem::path> applicationDirectories(const Environment& environment = ::getenv);

}  // namespace tarnix::linux_desktop
