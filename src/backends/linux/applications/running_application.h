#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "backends/linux/applications/application_finder.h"
#include "platform/appkit/workspace.h"

namespace tarnix::linux_desktop {

// What the identifiers of programs without a desktop entry begin with; their path follows.
inline constexpr std::string_view kProgramPrefix = "exe:";

// A process as it was when it was asked about, with the desktop entry that was found for it. The bundle is
// the entry: its file is the bundle's location, its id the bundle's identifier. Without an entry the bundle
// is the program: its executable, or the script that its interpreter runs. There is neither for a process
// whose executable is kept from us. A sandbox's identifier stands even where its entry is not installed.
class RunningApplication final : public NSRunningApplication {
 public:
  // `entry` may be null.
  RunningApplication(ProcessInfo process, DesktopEntries::Entry entry)
      : process_(std::move(process)), entry_(std::move(entry)), program_(programOf(process_)) {}

  // The entry's name, else the program's.
  std::optional<String> localizedName() const override;
  std::optional<URL> executableURL() const override;
  std::optional<URL> bundleURL() const override;
  std::optional<String> bundleIdentifier() const override;
  int processIdentifier() const override { return process_.processIdentifier; }

 private:
  static std::string programOf(const ProcessInfo& process);

  ProcessInfo process_;
  DesktopEntries::Entry entry_;
  std::string program_;  // The path of the program.
};

}  // namespace tarnix::linux_desktop
