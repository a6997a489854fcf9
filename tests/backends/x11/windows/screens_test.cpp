#include "backends/x11/windows/screens.h"

#include <gmock/gmock.h>
#include <sys/uio.h>
#include <xcb/randr.h>
#include <xcb/xcbext.h>

#include <array>

#include "backends/x11/windows/window_desktop.h"

namespace tarnix::x11 {
namespace {

using ::testing::ElementsAre;
using testing::WindowDesktop;

std::vector<CGRect> framesOf(const ScreenList& list) {
  std::vector<CGRect> frames;
  for (const NSScreen& screen : list.screens()) frames.push_back(screen.frame);
  return frames;
}

// The request SetMonitor of RandR 1.5. XCB's own function for it gives a length that breaks the connection.
struct SetMonitorRequest {
  std::array<std::uint8_t, 4> header{};
  xcb_window_t window = XCB_WINDOW_NONE;
  xcb_randr_monitor_info_t monitor{};
};

// A monitor without an output, as a person may define one for a part of the desktop.
void defineMonitor(testing::WindowClient& client, std::string_view name, bool isPrimary, CGRect area) {
  SetMonitorRequest request;
  request.window = client.root();
  request.monitor.name = client.atom(name);
  request.monitor.primary = isPrimary;
  request.monitor.x = static_cast<std::int16_t>(area.x);
  request.monitor.y = static_cast<std::int16_t>(area.y);
  request.monitor.width = static_cast<std::uint16_t>(area.width);
  request.monitor.height = static_cast<std::uint16_t>(area.height);
  // XCB writes into the two places before the first one.
  std::array<iovec, 4> parts{};
  parts[2] = {&request, sizeof request};
  const xcb_protocol_request_t protocol{1, &xcb_randr_id, XCB_RANDR_SET_MONITOR, 1};
  xcb_send_request(client.xcb(), 0, &parts[2], &protocol);
  client.settle();
}

TEST(ScreenList, followsTheMonitorsAndPutsThePrimaryOneFirst) {
  WindowDesktop desktop(WindowDesktop::Manager::none);
  ScreenList list(desktop.connection);
  EXPECT_THAT(framesOf(list), ElementsAre(CGRect{0, 0, 1280, 800}));

  defineMonitor(*desktop.client, "left", false, {0, 0, 640, 800});
  EXPECT_TRUE(desktop.runUntil([&] { return list.screens().front().frame.width == 640; }));
  defineMonitor(*desktop.client, "right", true, {640, 0, 640, 800});
  EXPECT_TRUE(desktop.runUntil([&] { return list.screens().front().frame.x == 640; }));
  EXPECT_THAT(framesOf(list),
              ElementsAre(CGRect{640, 0, 640, 800}, CGRect{0, 0, 640, 800}, CGRect{0, 0, 1280, 800}));

  desktop.server.kill();
  EXPECT_TRUE(desktop.runUntil([&] { return !desktop.connection->isOpen(); }));
  EXPECT_EQ(list.screens().size(), 3U);
}

}  // namespace
}  // namespace tarnix::x11
