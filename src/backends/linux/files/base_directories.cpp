#include "backends/linux/files/base_directories.h"

#include <sstream>
#include <string>

namespace tarnix::linux_desktop {
namespace {

using std::filesystem::path;

std::optional<path> absolutePath(const char* value) {
  if (value == nullptr || value[0] != '/') return std::nullopt;
  return path(value);
}

// The directory that `variable` names, else `fallback` in the home directory.
std::optional<path> baseDirectory(const Environment& environment, const char* variable,
                                  const char* fallback) {
  if (const auto given = absolutePath(environment(variable))) return given;
  const auto home = absolutePath(environment("HOME"));
  return home ? std::optional(*home / fallback) : std::nullopt;
}

std::optional<path> fileInConfiguration(const Environment& environment, const path& file) {
  const auto configuration = baseDirectory(environment, "XDG_CONFIG_HOME", ".config");
  return configuration ? std::optional(*configuration / "tarnix" / file) : std::nullopt;
}

}  // namespace

std::optional<path> defaultSettingsFile(const Environment& environment) {
  return fileInConfiguration(environment, "settings.plist");
}

std::optional<path> suiteSettingsFile(const std::string& name, const Environment& environment) {
  return fileInConfiguration(environment, path("suites") / (name + ".plist"));
}

std::vector<path> applicationDirectories(const Environment& environment) {
  std::vector<path> directories;
  if (const auto own = baseDirectory(environment, "XDG_DATA_HOME", ".local/share"))
    directories.push_back(*own);
  const char* const given = environment("XDG_DATA_DIRS");
  const bool isGiven = given != nullptr && given[0] != '\0';
  std::istringstream list(isGiven ? given : "/usr/local/share:/usr/share");
  for (std::string directory; std::getline(list, directory, ':');) {
    if (const auto absolute = absolutePath(directory.c_str())) directories.push_back(*absolute);
  }
  for (path& directory : directories) directory /= "applications";
  return directories;
}

}  // namespace tarnix::linux_desktop
