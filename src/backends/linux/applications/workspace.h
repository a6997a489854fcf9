#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "backends/linux/applications/application_finder.h"
#include "backends/linux/applications/url_opener.h"
#include "platform/appkit/workspace.h"

namespace tarnix::linux_desktop {

// The applications of the session. What only the window system knows is given as functions, which must answer
// at once and may be empty. Used on the main thread.
class Workspace final : public NSWorkspace {
 public:
  // The process whose window has the keyboard; absent when no window has it.
  using FrontmostProcess = std::function<std::optional<int>()>;
  // The classes of the windows that belong to a process, the most telling first.
  using WindowClasses = std::function<std::vector<WindowClass>(int processIdentifier)>;

  Workspace(std::shared_ptr<DesktopEntries> entries, FrontmostProcess frontmostProcess,
            WindowClasses windowClasses, ProcessTable processes = ProcessTable())
      : entries_(std::move(entries)),
        frontmostProcess_(std::move(frontmostProcess)),
        windowClasses_(std::move(windowClasses)),
        processes_(std::move(processes)) {}

  std::shared_ptr<NSRunningApplication> frontmostApplication() const override;
  std::shared_ptr<NSRunningApplication> runningApplication(int processIdentifier) const override;
  // Answers for a process as it is now, also when that has ended meanwhile: the identifier of the application
  // that it is, told whether it has windows. None for a program that has neither a window nor a desktop entry
  // of its own, such as a tool in a terminal.
  using Identity = std::function<std::optional<String>(bool hasWindows)>;
  Identity identityOf(int processIdentifier) const;
  // The desktop entry's file, or that of the program itself.
  std::optional<URL> URLForApplicationWithBundleIdentifier(const String& identifier) const override;

  NSImage iconForFile(const String& path) const override;
  std::optional<String> localizedName(const URL& url) const override;
  void activateFileViewerSelectingURLs(const std::vector<URL>& urls) const override;
  // Asks the desktop's file manager to show files, and calls `failed` if there is none. Without one the
  // folder of the first file is opened.
  using FileManager = std::function<void(const std::vector<String>& urls, std::function<void()> failed)>;
  void setFileManager(FileManager fileManager) { fileManager_ = std::move(fileManager); }

  bool openURL(const URL& url) const override { return opener_->open(url.absoluteString().str()); }

 private:
  std::shared_ptr<DesktopEntries> entries_;
  FrontmostProcess frontmostProcess_;
  WindowClasses windowClasses_;
  ProcessTable processes_;
  std::shared_ptr<UrlOpener> opener_ = std::make_shared<UrlOpener>();
  FileManager fileManager_;
};

}  // namespace tarnix::linux_desktop
