#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "backends/linux/applications/desktop_entries.h"
#include "backends/linux/applications/process_info.h"

namespace tarnix::linux_desktop {

// The two names that a window carries (WM_CLASS, ICCCM section 4.1.2.5).
struct WindowClass {
  std::string instance;
  std::string className;

  friend bool operator==(const WindowClass&, const WindowClass&) = default;
};

// The desktop entry of a process, by the best evidence there is: the sandbox that it runs in, its snap, the
// classes of its windows, the unit that the session manager started it in, the launcher's note for it, the
// program that it runs, and last a hint that it may have inherited. Null when no installed entry fits.
DesktopEntries::Entry findApplication(DesktopEntries& entries, const ProcessInfo& process,
                                      const std::vector<WindowClass>& windows = {});

// The same for a process without windows, by the evidence that it can't have from the process that started
// it: a tool that runs in a terminal is not the terminal.
DesktopEntries::Entry findOwnApplication(DesktopEntries& entries, const ProcessInfo& process);

// The application ids that the name of a unit may stand for, the longest first. Units are named
// `app[-LAUNCHER]-ID-RANDOM.scope` or `.slice`, `app[-LAUNCHER]-ID[@RANDOM].service`, and by D-Bus activation
// `dbus-NAME-ID@RANDOM.service`. None for other units.
std::vector<std::string> applicationIdsOfUnit(std::string_view unit);

// The desktop entry ids (`SNAP_APP`) that a unit named `snap.SNAP.APP...` may stand for. None for others.
std::vector<std::string> applicationIdsOfSnap(std::string_view unit);

}  // namespace tarnix::linux_desktop
