#include "backends/simulated/desktop.h"

#include <algorithm>
#include <string>

namespace tarnix::simulated {
namespace {

// The moment at which every simulated day begins.
constexpr Date kStart{Date::Interval(780'000'000)};
constexpr int kFirstProcessIdentifier = 1000;

}  // namespace

class Desktop::Workspace final : public NSWorkspace {
 public:
  explicit Workspace(const Desktop& desktop) : desktop_(desktop) {}

  std::shared_ptr<NSRunningApplication> frontmostApplication() const override { return desktop_.frontmost_; }

  std::shared_ptr<NSRunningApplication> runningApplication(int processIdentifier) const override {
    for (const auto& application : desktop_.applications_) {
      if (application->process == processIdentifier) return application;
    }
    return nullptr;
  }

  std::optional<URL> URLForApplicationWithBundleIdentifier(const String& identifier) const override {
    for (const auto& application : desktop_.applications_) {
      if (application->identifier == identifier) return application->bundle;
    }
    return std::nullopt;
  }

  bool openURL(const URL& url) const override {
    desktop_.openedURLs_.push_back(url);
    return true;
  }

  NSImage iconForFile(const String& path) const override {
    for (const auto& application : desktop_.applications_) {
      if (application->bundle && application->bundle->path() == path)
        return {{application->name.value_or("")}, path};
    }
    return {{}, path};
  }

  std::optional<String> localizedName(const URL& url) const override {
    for (const auto& application : desktop_.applications_) {
      if (application->bundle == url) return application->name;
    }
    return std::nullopt;
  }

  void activateFileViewerSelectingURLs(const std::vector<URL>& urls) const override {
    desktop_.revealedURLs_.insert(desktop_.revealedURLs_.end(), urls.begin(), urls.end());
  }

 private:
  const Desktop& desktop_;
};

class Desktop::WindowServer final : public CGWindowServer {
 public:
  explicit WindowServer(const Desktop& desktop) : desktop_(desktop) {}

  std::optional<std::vector<CGWindowDictionary>> copyWindowInfo(CGWindowListOption,
                                                                CGWindowID) const override {
    ++desktop_.windowListReads_;
    if (!desktop_.hasWindowList_) return std::nullopt;
    return desktop_.windows_;
  }

 private:
  const Desktop& desktop_;
};

class Desktop::Screens final : public NSScreenList {
 public:
  explicit Screens(const Desktop& desktop) : desktop_(desktop) {}
  std::vector<NSScreen> screens() const override { return desktop_.screens_; }

 private:
  const Desktop& desktop_;
};

Desktop::Desktop() {
  platform_.mainRunLoop = std::make_shared<RunLoop>([this] { return clock_; });
  platform_.wallClock = [this] { return now(); };
  platform_.timeZone = timeZone_;
  for (auto& pasteboard : platform_.pasteboards) {
    pasteboard = std::make_shared<Pasteboard>([this] { runLoop().noteChange(); });
  }
  platform_.workspace = std::make_shared<Workspace>(*this);
  platform_.windowServer = std::make_shared<WindowServer>(*this);
  platform_.screens = std::make_shared<Screens>(*this);
  platform_.standardUserDefaults = NSUserDefaults::make(std::make_unique<MemoryDefaultsStorage>());
  platform_.suites = std::make_shared<DefaultsSuites>(
      [](const String&) { return std::make_unique<MemoryDefaultsStorage>(); });
  platform_.fileManager = files_;
  platform_.utilityQueue = utilityQueue_;
  scope_ = std::make_unique<PlatformScope>(platform_);
}

Desktop::~Desktop() = default;

void Desktop::advance(RunLoop::Duration duration) {
  const RunLoop::Instant end = clock_ + duration;
  for (auto due = runLoop().nextDue(); due && *due <= end; due = runLoop().nextDue()) {
    clock_ = std::max(clock_, *due);
    runLoop().runDue();
  }
  clock_ = end;
}

Application& Desktop::app(const String& name) {
  for (const auto& application : applications_) {
    if (application->name == name) return *application;
  }
  const int process = kFirstProcessIdentifier + static_cast<int>(applications_.size());
  return *applications_.emplace_back(std::make_shared<Application>(*this, name, process));
}

void Desktop::quit(const String& name) {
  std::erase_if(applications_, [&](const auto& application) { return application->name == name; });
}

void Desktop::setSetting(const String& key, PropertyList::Value value) {
  platform_.standardUserDefaults->setObject(PropertyList{std::move(value)}, key);
}

std::optional<PropertyList> Desktop::setting(const String& key) const {
  return platform_.standardUserDefaults->objectForKey(key);
}

Pasteboard& Desktop::pasteboard(NSPasteboard::Name name) {
  return static_cast<Pasteboard&>(*platform_.pasteboards[static_cast<std::size_t>(name)]);
}

Date Desktop::now() const { return kStart + std::chrono::duration_cast<Date::Interval>(clock_); }

Application::Application(Desktop& desktop, const String& applicationName, int processIdentifier)
    : name(applicationName),
      identifier("org.example." + applicationName.str()),
      bundle(URL("/applications/" + applicationName.str() + ".desktop")),
      executable(URL("/usr/bin/" + applicationName.str())),
      process(processIdentifier),
      desktop_(desktop) {}

void Application::copies(const String& text) { copies(ItemContent{{"public.utf8-plain-text", text}}); }

void Application::copies(const ItemContent& item) { copies(std::vector<ItemContent>{item}); }

void Application::copies(const std::vector<ItemContent>& items) { desktop_.pasteboard().write(items); }

void Application::emptiesPasteboard() { copies(std::vector<ItemContent>{}); }

CGWindowDictionary& Application::opensWindow() {
  CGWindowDictionary window;
  window.number = static_cast<std::int64_t>(desktop_.windows_.size() + 1);
  window.ownerPID = static_cast<std::int64_t>(process);
  window.ownerName = name;
  window.bounds = CGRect{100, 100, 800, 600};
  window.layer = std::int64_t{0};
  window.alpha = 1.0;
  window.sharingState = std::int64_t{1};
  window.isOnscreen = std::int64_t{1};
  return *desktop_.windows_.insert(desktop_.windows_.begin(), window);
}

void Application::becomesFrontmost() {
  for (const auto& application : desktop_.applications_) {
    if (application.get() == this) desktop_.setFrontmost(application);
  }
}

}  // namespace tarnix::simulated
