#pragma once

#include <memory>
#include <vector>

#include "backends/linux/application_finder.h"
#include "platform/appkit/workspace.h"

namespace tarnix::linux_desktop {

// A process as it was when it was asked about, with the desktop entry that was found for it. The bundle is
// the entry: its file is the bundle's location, its id the bundle's identifier. Without an entry there is
// neither.
class RunningApplication final : public NSRunningApplication {
 public:
  // `entry` may be null.
  RunningApplication(ProcessInfo process, DesktopEntries::Entry entry)
      : process_(std::move(process)), entry_(std::move(entry)) {}

  // The entry's name, else the program's.
  std::optional<String> localizedName() const override;
  std::optional<URL> executableURL() const override;
  std::optional<URL> bundleURL() const override;
  std::optional<String> bundleIdentifier() const override;
  int processIdentifier() const override { return process_.processIdentifier; }

 private:
  ProcessInfo process_;
  DesktopEntries::Entry entry_;
};

}  // namespace tarnix::linux_desktop
