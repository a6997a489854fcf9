#include "capture/window_info.h"

#include <gmock/gmock.h>

#include <functional>
#include <limits>

#include "backends/simulated/desktop.h"
#include "capture/running_application_title.h"

namespace tarnix {
namespace {

using Number = CGWindowDictionary::Number;
using simulated::Application;

constexpr CGRect kScreen{0, 0, 1920, 1080};

Number whole(std::int64_t value) { return value; }

std::optional<String> frontIdentifier() {
  const auto app = WindowInfo::frontUserApp();
  return app ? std::optional(app->bundleIdentifier) : std::nullopt;
}

struct Shown {
  std::int64_t layer = 0;
  double alpha = 1;
  CGRect bounds{100, 100, 800, 600};
  String owner = "Editor";
  std::optional<String> bundle = "org.example.editor";
  bool isFrontmost = false;
};

bool isListed(const Shown& shown) {
  SimulatedDesktop desktop;
  auto& app = desktop.app("editor");
  app.identifier = shown.bundle;
  if (shown.isFrontmost) app.becomesFrontmost();
  auto& window = app.opensWindow();
  window.layer = shown.layer;
  window.alpha = shown.alpha;
  window.bounds = shown.bounds;
  window.ownerName = shown.owner;
  return !WindowInfo::list(17).empty();
}

TEST(WindowInfo, isListedWhenItMayBelongToTheUsersWork) {
  const Shown listed[] = {
      {},
      {.layer = 23},
      {.alpha = 0.21},
      {.alpha = 0.5, .bounds = kScreen},
      {.alpha = 0.4, .bounds = {0, 1, 1920, 1080}},
      {.bounds = {0, 0, 50, 50}},
      {.owner = "agency"},
      {.bundle = {}},
      {.bundle = "com.apple.Dock"},
      {.bundle = "com.grammarly.ProjectLlama", .isFrontmost = true},
  };
  const Shown passedOver[] = {
      {.layer = 24},
      {.layer = -1},
      {.alpha = 0.2},
      {.alpha = std::numeric_limits<double>::quiet_NaN()},
      {.alpha = 0.4, .bounds = kScreen},
      {.bounds = {0, 0, 49.9, 200}},
      {.bounds = {0, 0, 200, 49.9}},
      {.owner = "Sync AGenT"},
      {.owner = "agent", .bundle = {}},
      {.bundle = "com.apple.dock", .isFrontmost = true},
      {.bundle = "com.grammarly.ProjectLlama"},
  };
  for (const auto& each : listed) EXPECT_TRUE(isListed(each)) << "listed " << &each - listed;
  for (const auto& each : passedOver) EXPECT_FALSE(isListed(each)) << "passed over " << &each - passedOver;
}

TEST(WindowInfo, readsNumbersByTheirKindAndNamesItsOwnerAsWellAsItCan) {
  SimulatedDesktop desktop;
  auto window = desktop.app("editor").opensWindow();
  window.bounds = kScreen;
  window.alpha = whole(1);
  window.memoryUsage = whole(4096);
  const auto told = WindowInfo::from(window);
  ASSERT_TRUE(told);
  EXPECT_EQ(told->alpha, 1);
  EXPECT_EQ(told->memoryUsage, 4096);
  EXPECT_TRUE(told->isOnScreen && told->fillsScreen);
  EXPECT_EQ(told->owner.name, "editor");

  window.memoryUsage = 4096.0;
  window.isOnscreen = 1.0;
  window.ownerName.reset();
  desktop.app("editor").name = "Title";
  EXPECT_EQ(WindowInfo::from(window)->memoryUsage, 0);
  EXPECT_FALSE(WindowInfo::from(window)->isOnScreen);
  EXPECT_EQ(WindowInfo::from(window)->owner.name, "Title");
  window.ownerPID = whole(-7);
  EXPECT_EQ(WindowInfo::from(window)->owner.name, "<Unknown>");
}

TEST(WindowInfo, givesTheForemostApplicationThatHasABundle) {
  SimulatedDesktop desktop;
  desktop.app("terminal").becomesFrontmost();
  EXPECT_EQ(frontIdentifier(), "org.example.terminal");

  desktop.app("behind").opensWindow();
  desktop.app("editor").opensWindow();
  EXPECT_EQ(WindowInfo::frontUserApp(),
            (WindowInfo::UserApp{*desktop.app("editor").bundle, "org.example.editor"}));

  desktop.app("unbundled").identifier.reset();
  desktop.app("unbundled").opensWindow();
  desktop.app("unplaced").bundle.reset();
  desktop.app("unplaced").opensWindow();
  desktop.app("gone").opensWindow();
  desktop.quit("gone");
  EXPECT_EQ(WindowInfo::list(17).size(), 5U);
  EXPECT_EQ(frontIdentifier(), "org.example.editor");

  desktop.app("assistant").identifier = "com.grammarly.ProjectLlama";
  desktop.app("assistant").opensWindow();
  EXPECT_EQ(frontIdentifier(), "org.example.editor");
  desktop.app("assistant").becomesFrontmost();
  EXPECT_EQ(frontIdentifier(), "com.grammarly.ProjectLlama");
}

TEST(WindowInfo, fallsBackOnTheFrontmostApplicationIfThatHasABundle) {
  SimulatedDesktop desktop;
  EXPECT_EQ(frontIdentifier(), std::nullopt);
  desktop.app("editor").opensWindow().layer = whole(24);
  desktop.app("terminal").becomesFrontmost();
  EXPECT_EQ(frontIdentifier(), "org.example.terminal");
  desktop.setHasWindowList(false);
  EXPECT_EQ(frontIdentifier(), "org.example.terminal");
  desktop.app("terminal").bundle.reset();
  EXPECT_EQ(frontIdentifier(), std::nullopt);
}

TEST(RunningApplication, isTitledByTheBestNameThatItHas) {
  SimulatedDesktop desktop;
  Application app(desktop, "Editor", 4711);
  app.executable = URL("/usr/lib/editor-bin.real");
  app.bundle = URL("/applications/org.example.editor.desktop");
  EXPECT_EQ(localizedTitle(app), "Editor");
  app.name.reset();
  EXPECT_EQ(localizedTitle(app), "editor-bin");
  app.executable.reset();
  EXPECT_EQ(localizedTitle(app), "org.example.editor");
  app.bundle.reset();
  app.identifier = "org.example.id";
  EXPECT_EQ(localizedTitle(app), "org.example.id");
  app.identifier.reset();
  EXPECT_EQ(localizedTitle(app), "PID4711");
  app.process = -1;
  EXPECT_EQ(localizedTitle(app), "<Unknown>");
}

}  // namespace
}  // namespace tarnix
