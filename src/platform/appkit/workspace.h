#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "platform/appkit/image.h"
#include "platform/coregraphics/rect.h"
#include "platform/foundation/string.h"
#include "platform/foundation/url.h"

namespace tarnix {

// A program that runs on the desktop. Everything but the process identifier may be unknown.
class NSRunningApplication {
 public:
  virtual ~NSRunningApplication() = default;
  virtual std::optional<String> localizedName() const = 0;
  virtual std::optional<URL> executableURL() const = 0;
  virtual std::optional<URL> bundleURL() const = 0;
  virtual std::optional<String> bundleIdentifier() const = 0;
  // -1 when the program has no process.
  virtual int processIdentifier() const = 0;

  // Absent when no such process runs.
  static std::shared_ptr<NSRunningApplication> runningApplicationWithProcessIdentifier(int processIdentifier);
};

// The desktop session. Answers from memory and from the local system, without waiting for other programs.
class NSWorkspace {
 public:
  virtual ~NSWorkspace() = default;
  // The application that has the user's keyboard, if any.
  virtual std::shared_ptr<NSRunningApplication> frontmostApplication() const = 0;
  virtual std::shared_ptr<NSRunningApplication> runningApplication(int processIdentifier) const = 0;
  virtual std::optional<URL> URLForApplicationWithBundleIdentifier(const String& identifier) const = 0;

  // Has the program that the desktop chose for this kind of URL open it, without waiting for it. False when
  // there is none that could be asked.
  virtual bool openURL(const URL& url) const = 0;

  // Of an application, where the path is its bundle location; else by the kind of file, which is not looked
  // at.
  virtual NSImage iconForFile(const String& path) const = 0;
  // What the user calls the application at this place; absent for anything else (NSURLLocalizedNameKey).
  virtual std::optional<String> localizedName(const URL& url) const = 0;
  // Has the file manager show the files selected, or the folder of one that is gone. Waits for nobody.
  virtual void activateFileViewerSelectingURLs(const std::vector<URL>& urls) const = 0;

  static NSWorkspace& sharedWorkspace();
};

// A screen and where it lies, in points.
struct NSScreen {
  CGRect frame;
  static std::vector<NSScreen> screens();
};

class NSScreenList {
 public:
  virtual ~NSScreenList() = default;
  virtual std::vector<NSScreen> screens() const = 0;
};

}  // namespace tarnix
