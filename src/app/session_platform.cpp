#include "app/session_platform.h"

#include <cstring>
#include <filesystem>
#include <iostream>
#include <optional>
#include <string_view>
#include <utility>

#include "app/absent.h"
#include "backends/linux/applications/desktop_entries.h"
#include "backends/linux/applications/workspace.h"
#include "backends/linux/files/base_directories.h"
#include "backends/linux/files/defaults_file.h"
#include "backends/linux/files/file_manager.h"
#include "backends/linux/poll_driver.h"
#include "backends/linux/time_zone.h"
#include "backends/linux/utility_queue.h"
#include "backends/x11/clipboard/pasteboard.h"
#include "backends/x11/windows/screens.h"
#include "backends/x11/windows/window_server.h"

namespace tarnix {
namespace {

std::string_view reasonOf(linux_desktop::StorageFailure::Kind kind) {
  using Kind = linux_desktop::StorageFailure::Kind;
  switch (kind) {
    case Kind::unreachable:
      return "their directory can't be made";
    case Kind::foreignOwner:
      return "their file belongs to another user";
    case Kind::notAFile:
      return "something else lies in the place of their file";
    case Kind::unreadable:
      return "their file can't be read";
    case Kind::busy:
      return "another program holds their file";
    case Kind::noSpace:
      return "the disk is full";
    case Kind::unwritable:
      return "their file can't be written";
    case Kind::damaged:
      return "their file is damaged, and is kept under another name";
    case Kind::unrepresentable:
      return "a value has no form in their file";
    case Kind::tooLarge:
      return "a value is too large for their file";
    case Kind::unwatched:
      return "their file can't be watched, so changes by other programs go unnoticed";
  }
  return "unknown";
}

void reportSettingsFailure(const linux_desktop::StorageFailure& failure) {
  std::cerr << "tarnix: settings: " << reasonOf(failure.kind);
  if (failure.systemError != 0) std::cerr << " (" << std::strerror(failure.systemError) << ')';
  std::cerr << std::endl;
}

// Settings live for the run only where the environment names no home.
std::unique_ptr<DefaultsStorage> settingsStorage(const std::optional<std::filesystem::path>& file,
                                                 RunLoop& loop) {
  if (!file) return std::make_unique<MemoryDefaultsStorage>();
  return std::make_unique<linux_desktop::FileDefaultsStorage>(*file, reportSettingsFailure, &loop);
}

std::shared_ptr<linux_desktop::Workspace> workspaceOf(const std::shared_ptr<x11::WindowServer>& windows,
                                                      RunLoop& loop) {
  auto entries = std::make_shared<linux_desktop::DesktopEntries>(
      linux_desktop::applicationDirectories(), linux_desktop::localeNames(linux_desktop::messageLocale()));
  linux_desktop::readAheadInTurns(loop, entries);  // So that no copy has to wait for the disk.
  const auto classesOf = [windows](int process) {
    std::vector<linux_desktop::WindowClass> classes;
    for (const auto& each : windows->windowClasses(process))
      classes.push_back({each.instance, each.className});
    return classes;
  };
  return std::make_shared<linux_desktop::Workspace>(
      std::move(entries), [windows] { return windows->frontmostProcess(); }, classesOf);
}

// A program that ends right after its copy may have shown its window at the copy before only.
x11::Identify identifyWith(const std::shared_ptr<linux_desktop::Workspace>& workspace,
                           const std::shared_ptr<x11::WindowServer>& windows) {
  return [workspace, windows](int process) {
    return
        [windows, process, wasSeen = windows->hasWindow(process), identity = workspace->identityOf(process)] {
          return identity(wasSeen || windows->hasWindow(process));
        };
  };
}

}  // namespace

Platform sessionPlatform(x11::Session& session, std::shared_ptr<RunLoop> loop,
                         linux_desktop::Workspace::FileManager fileManager) {
  Platform platform;
  platform.mainRunLoop = std::move(loop);
  platform.wallClock = linux_desktop::wallClockNow;
  platform.timeZone = std::make_shared<linux_desktop::SystemTimeZone>();
  platform.mainBundle = std::make_shared<NSBundle>(linux_desktop::messageLanguages());
  platform.pasteboards.fill(std::make_shared<AbsentPasteboard>());
  platform.pasteboards[static_cast<std::size_t>(NSPasteboard::Name::general)] = session.pasteboard();
  const auto workspace = workspaceOf(session.windowServer(), *platform.mainRunLoop);
  workspace->setFileManager(std::move(fileManager));
  platform.workspace = workspace;
  session.pasteboard()->setIdentify(identifyWith(workspace, session.windowServer()));
  platform.fileManager = std::make_shared<linux_desktop::FileManager>();
  platform.utilityQueue = std::make_shared<linux_desktop::UtilityQueue>();
  platform.windowServer = session.windowServer();
  platform.screens = session.screens();
  platform.standardUserDefaults =
      NSUserDefaults::make(settingsStorage(linux_desktop::defaultSettingsFile(), *platform.mainRunLoop));
  platform.suites = std::make_shared<DefaultsSuites>([loop = platform.mainRunLoop](const String& name) {
    return settingsStorage(linux_desktop::suiteSettingsFile(name.str()), *loop);
  });
  return platform;
}

}  // namespace tarnix
