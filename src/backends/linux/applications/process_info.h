#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace tarnix::linux_desktop {

inline constexpr std::size_t kCommandNameLimit = 15;  // Bytes.

// What the system and the process itself say about a process at one moment. The command line, the command
// name and the launcher's notes are the process's own claims. What the system keeps from us, as with other
// users' processes and those that hide from debuggers, is empty.
struct ProcessInfo {
  int processIdentifier = 0;
  std::uint64_t startTime = 0;   // Clock ticks since the machine's start.
  std::string commandName;       // Cut at the limit.
  std::string executable;        // The absolute path, without a mark when the file was replaced since.
  std::string workingDirectory;  // An absolute path.
  std::vector<std::string> arguments;
  std::vector<std::string> controlGroups;  // The paths in the hierarchies that session managers use.
  std::string sandboxApplication;          // The Flatpak application that it runs inside.
  std::string launchedEntry;  // The desktop entry file that a launcher started this very process for.
  std::string hintedEntry;    // As a launcher noted for the process or for one it descends from.
};

// Reads the process table, `/proc` or what a test puts in its place.
class ProcessTable {
 public:
  explicit ProcessTable(std::filesystem::path root = "/proc") : root_(std::move(root)) {}

  // Absent when no such process runs, and when the identifier changed hands while it was looked at.
  std::optional<ProcessInfo> process(int processIdentifier) const;

 private:
  std::filesystem::path root_;
};

}  // namespace tarnix::linux_desktop
