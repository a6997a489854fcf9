#include "backends/x11/windows/window_server.h"

#include <gmock/gmock.h>
#include <signal.h>
#include <unistd.h>

#include <array>

#include "backends/x11/windows/window_desktop.h"

namespace tarnix::x11 {
namespace {

using ::testing::DoubleNear;
using ::testing::ElementsAre;
using ::testing::Gt;
using ::testing::Optional;
using testing::WindowDesktop;
using Manager = WindowDesktop::Manager;
using Number = CGWindowDictionary::Number;

constexpr auto kOnScreen = kCGWindowListOptionOnScreenOnly;

Number whole(std::int64_t value) { return value; }

TEST(WindowServer, listsManagedWindowsFrontToBackWithTheirFrames) {
  WindowDesktop desktop(Manager::openbox);
  auto& client = *desktop.client;
  const auto first = client.create({.x = 100, .y = 100, .width = 300, .height = 150});
  client.setBytes(first, "WM_NAME", "STRING",
                  "Gr\xFC\xDF"
                  "e");
  const auto second = client.create({.width = 300, .height = 150});
  client.setBytes(second, "WM_NAME", "STRING", "not this");
  client.setBytes(second, "_NET_WM_NAME", "UTF8_STRING", "Zweites \xE2\x9C\x93 \xFF");
  client.setItems(second, "_GTK_FRAME_EXTENTS", XCB_ATOM_CARDINAL, {10, 20, 30, 40});
  client.show(first);
  client.show(second);

  ASSERT_TRUE(desktop.eventually([&] { return desktop.order({first, second}).size() == 2; }));
  client.tellManager(first, "_NET_ACTIVE_WINDOW", {2, 0, 0});
  EXPECT_TRUE(desktop.eventually([&] {
    return desktop.order({first, second}) == std::vector{first, second};
  }));
  client.tellManager(second, "_NET_ACTIVE_WINDOW", {2, 0, 0});
  EXPECT_TRUE(desktop.eventually([&] {
    return desktop.order({first, second}) == std::vector{second, first};
  }));

  const auto frame = client.items(first, "_NET_FRAME_EXTENTS");
  ASSERT_THAT(frame, ElementsAre(Gt(0U), Gt(0U), Gt(10U), Gt(0U)));
  const double width = 300 + frame[0] + frame[1], height = 150 + frame[2] + frame[3];
  const auto framed = desktop.find(first);
  EXPECT_EQ(framed->name, "Grüße");
  EXPECT_EQ(framed->bounds->width, width);
  EXPECT_EQ(framed->bounds->height, height);
  const auto shadowed = desktop.find(second);
  EXPECT_EQ(shadowed->name, "Zweites ✓ \xEF\xBF\xBD");
  EXPECT_EQ(shadowed->bounds->width, width - 30);
  EXPECT_EQ(shadowed->bounds->height, height - 70);
  EXPECT_EQ(desktop.find(first)->isOnscreen, whole(1));
}

TEST(WindowServer, readsLayersAndOpacityFromTheHints) {
  WindowDesktop desktop(Manager::none);
  auto& client = *desktop.client;
  const auto window = client.create({});
  client.show(window);
  const std::array<std::pair<const char*, std::int64_t>, 6> cases{{
      {"_NET_WM_WINDOW_TYPE_DIALOG", 0},
      {"_NET_WM_WINDOW_TYPE_UTILITY", 3},
      {"_NET_WM_WINDOW_TYPE_DOCK", 24},
      {"_NET_WM_WINDOW_TYPE_POPUP_MENU", 101},
      {"_NET_WM_WINDOW_TYPE_TOOLTIP", 200},
      {"_NET_WM_WINDOW_TYPE_DND", 500},
  }};
  for (const auto& [type, layer] : cases) {
    client.setItems(window, "_NET_WM_WINDOW_TYPE", XCB_ATOM_ATOM,
                    {client.atom("_X_UNKNOWN"), client.atom(type)});
    desktop.refresh();
    EXPECT_EQ(desktop.find(window)->layer, whole(layer)) << type;
  }
  client.setAtom(window, "_NET_WM_WINDOW_TYPE", "_NET_WM_WINDOW_TYPE_NORMAL");
  client.setAtom(window, "_NET_WM_STATE", "_NET_WM_STATE_ABOVE");
  desktop.refresh();
  EXPECT_EQ(desktop.find(window)->layer, whole(3));
  EXPECT_EQ(std::get<double>(*desktop.find(window)->alpha), 1.0);

  client.setItems(window, "_NET_WM_WINDOW_OPACITY", XCB_ATOM_CARDINAL, {0x40000000});
  desktop.refresh();
  EXPECT_THAT(std::get<double>(*desktop.find(window)->alpha), DoubleNear(0.25, 0.001));
  client.setBytes(window, "_NET_WM_WINDOW_OPACITY", "STRING", "half");
  desktop.refresh();
  EXPECT_EQ(std::get<double>(*desktop.find(window)->alpha), 1.0);
}

TEST(WindowServer, leavesOutWhatTheOptionsExclude) {
  WindowDesktop desktop(Manager::openbox);
  auto& client = *desktop.client;
  const auto shown = client.create({}), iconified = client.create({}), elsewhere = client.create({}),
             background = client.create({});
  client.setAtom(background, "_NET_WM_WINDOW_TYPE", "_NET_WM_WINDOW_TYPE_DESKTOP");
  for (const auto window : {shown, iconified, elsewhere, background}) client.show(window);
  ASSERT_TRUE(desktop.eventually([&] {
    return desktop.order({shown, iconified, elsewhere, background}).size() == 4;
  }));
  client.tellManager(iconified, "WM_CHANGE_STATE", {3});
  client.tellManager(elsewhere, "_NET_WM_DESKTOP", {1, 2});

  EXPECT_TRUE(desktop.eventually([&] { return !desktop.find(iconified, kOnScreen); }));
  EXPECT_TRUE(desktop.eventually([&] { return !desktop.find(elsewhere, kOnScreen); }));
  EXPECT_TRUE(desktop.find(shown, kOnScreen | kCGWindowListExcludeDesktopElements));
  EXPECT_EQ(desktop.find(iconified)->isOnscreen, whole(0));
  EXPECT_TRUE(desktop.find(background, kOnScreen));
  EXPECT_FALSE(desktop.find(background, kCGWindowListExcludeDesktopElements));
}

TEST(WindowServer, knowsTheProcessOfAWindowWhateverTheWindowSays) {
  WindowDesktop desktop(Manager::openbox);
  auto& client = *desktop.client;
  const auto liar = client.create({});
  client.setItems(liar, "_NET_WM_PID", XCB_ATOM_CARDINAL, {2});
  client.setBytes(liar, "WM_CLASS", "STRING", std::string("editor\0Editor\0", 14));
  client.show(liar);
  const auto terminal = desktop.start({"xterm", "-name", "shell", "-e", "sleep", "60"});

  const auto hasTerminal = [&] { return desktop.windows.frontmostProcess() == terminal.id(); };
  EXPECT_TRUE(desktop.eventually(hasTerminal));
  EXPECT_THAT(desktop.windows.windowClasses(terminal.id()), ElementsAre(WindowClass{"shell", "XTerm"}));
  EXPECT_EQ(desktop.find(liar)->ownerPID, whole(getpid()));
  EXPECT_EQ(desktop.find(liar)->ownerName, "Editor");
  EXPECT_THAT(desktop.windows.windowClasses(getpid()), ElementsAre(WindowClass{"editor", "Editor"}));
  EXPECT_THAT(desktop.windows.windowClasses(2), ElementsAre());

  client.tellManager(liar, "_NET_ACTIVE_WINDOW", {2, 0, 0});
  EXPECT_TRUE(desktop.eventually([&] { return desktop.windows.frontmostProcess() == getpid(); }));
}

TEST(WindowServer, windowsThatVanishAreLeftOutAndTheRestIsTold) {
  WindowDesktop desktop(Manager::none);
  auto& client = *desktop.client;
  const auto manager = client.create({}), kept = client.create({}), gone = client.create({});
  client.show(kept);
  client.setItems(manager, "_NET_SUPPORTING_WM_CHECK", XCB_ATOM_WINDOW, {manager});
  client.setItems(client.root(), "_NET_SUPPORTING_WM_CHECK", XCB_ATOM_WINDOW, {manager});
  client.setItems(client.root(), "_NET_CLIENT_LIST_STACKING", XCB_ATOM_WINDOW, {gone, kept, 0xFFFFFFFF});
  client.setItems(client.root(), "_NET_ACTIVE_WINDOW", XCB_ATOM_WINDOW, {gone});
  desktop.refresh();
  EXPECT_THAT(desktop.order({kept, gone}), ElementsAre(kept, gone));

  // The list still names it, as between its end and the window manager's notice of it.
  client.destroy(gone);
  desktop.refresh();
  EXPECT_THAT(desktop.order({kept, gone}), ElementsAre(kept));
  EXPECT_EQ(desktop.windows.frontmostProcess(), std::nullopt);

  // A list that a window manager left behind counts for nothing.
  client.destroy(manager);
  const auto fresh = client.create({});
  client.show(fresh);
  desktop.refresh();
  EXPECT_THAT(desktop.order({kept, fresh}), ElementsAre(fresh, kept));
}

TEST(WindowServer, withoutAWindowManagerTheWindowsOfTheRootAreTheList) {
  WindowDesktop desktop(Manager::none);
  EXPECT_EQ(desktop.windows.copyWindowInfo(0, kCGNullWindowID), std::nullopt);
  auto& client = *desktop.client;
  const auto plain = client.create({.x = 30, .y = 40}), unmapped = client.create({}),
             menu = client.create({}, XCB_WINDOW_NONE, true), frame = client.create({.x = 5, .y = 6});
  const auto framed = client.create({.x = 2, .y = 3}, frame), part = client.create({}, plain);
  client.setItems(framed, "WM_STATE", client.atom("WM_STATE"), {1, 0});
  for (const auto window : {part, plain, menu, framed, frame}) client.show(window);
  xcb_set_input_focus(client.xcb(), XCB_INPUT_FOCUS_NONE, part, XCB_CURRENT_TIME);
  client.settle();

  desktop.refresh();
  EXPECT_THAT(desktop.order({plain, unmapped, menu, frame, framed, part}), ElementsAre(framed, plain));
  EXPECT_THAT(desktop.find(framed)->bounds, Optional(CGRect{7, 9, 200, 100}));
  EXPECT_THAT(desktop.find(plain)->bounds, Optional(CGRect{30, 40, 200, 100}));
  EXPECT_EQ(desktop.windows.frontmostProcess(), getpid());
}

TEST(WindowServer, aServerThatDoesNotAnswerHoldsNobodyUp) {
  WindowDesktop desktop(Manager::none);
  auto& client = *desktop.client;
  const auto window = client.create({});
  client.show(window);
  desktop.refresh();
  const auto late = client.create({});
  client.show(late);

  int calls = 0;
  desktop.server.pause();
  desktop.windows.refresh([&] { ++calls; });
  desktop.windows.refresh([&] { ++calls; });
  EXPECT_TRUE(desktop.runUntil([&] { return calls == 2; }));
  EXPECT_THAT(desktop.order({window, late}), ElementsAre(window));
  desktop.server.resume();
  EXPECT_TRUE(desktop.runUntil([&] { return desktop.order({window, late}).size() == 2; }));
  EXPECT_EQ(calls, 2);

  desktop.server.kill();
  desktop.windows.refresh([&] { ++calls; });
  EXPECT_TRUE(desktop.runUntil([&] { return !desktop.connection->isOpen(); }));
  EXPECT_EQ(desktop.order({window, late}).size(), 2U);
}

}  // namespace
}  // namespace tarnix::x11
