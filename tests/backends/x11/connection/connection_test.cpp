#include "backends/x11/connection/connection.h"

#include <gtest/gtest.h>

#include <chrono>

#include "backends/linux/poll_driver.h"
#include "backends/x11/x_server.h"

namespace tarnix::x11 {
namespace {

using namespace std::chrono_literals;
using testing::XServer;

TEST(Connection, saysWhyADisplayCannotBeHad) {
  RunLoop loop(linux_desktop::steadyClock());
  for (const char* display : {":6553", "nonsense", "/dev/null"}) {
    const auto connection = Connection::open(display, loop);
    ASSERT_FALSE(connection) << display;
    EXPECT_EQ(connection.error().kind, Error::Kind::unavailable) << display;
    EXPECT_NE(connection.error().detail.find(display), std::string::npos);
  }
}

TEST(Connection, answersArriveInTheLoopAndInTheOrderOfTheServer) {
  XServer server;
  RunLoop loop(linux_desktop::steadyClock());
  linux_desktop::PollDriver driver(loop);
  auto opened = Connection::open(server.display(), loop);
  ASSERT_TRUE(opened) << opened.error().detail;
  Connection& connection = **opened;

  std::string order;
  const xcb_window_t window = xcb_generate_id(connection.xcb());
  const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
  xcb_create_window(connection.xcb(), 0, window, connection.screen().root, 0, 0, 1, 1, 0,
                    XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &mask);
  const auto events = connection.onEvent(XCB_PROPERTY_NOTIFY, [&](const auto&) { order += "event "; });
  const auto first = connection.onReply<xcb_get_geometry_reply_t>(
      xcb_get_geometry(connection.xcb(), window), [&](auto reply) { order += reply ? "answer " : "none "; });
  xcb_change_property(connection.xcb(), XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8,
                      1, "x");
  // Complaints about vanished windows reach nobody but the one who asked.
  xcb_destroy_window(connection.xcb(), 1);
  const auto failing = connection.onReply<xcb_get_geometry_reply_t>(
      xcb_get_geometry(connection.xcb(), 1), [&](auto reply) { order += reply ? "answer " : "none "; });
  auto forgotten = connection.onReply<xcb_get_geometry_reply_t>(xcb_get_geometry(connection.xcb(), window),
                                                                [&](auto) { order += "forgotten "; });
  forgotten.cancel();
  const auto last = connection.onReply<xcb_get_input_focus_reply_t>(xcb_get_input_focus(connection.xcb()),
                                                                    [&](auto) { order += "last"; });

  EXPECT_EQ(order, "");
  EXPECT_TRUE(driver.runUntil([&] { return order.ends_with("last"); }, 5s));
  EXPECT_EQ(order, "answer event none last");
}

TEST(Connection, aLostServerIsToldOnceAndEverythingElseFallsSilent) {
  XServer server;
  RunLoop loop(linux_desktop::steadyClock());
  linux_desktop::PollDriver driver(loop);
  auto opened = Connection::open(server.display(), loop);
  ASSERT_TRUE(opened);
  Connection& connection = **opened;

  int losses = 0;
  int answers = 0;
  connection.setClosed([&] { ++losses; });
  server.kill();
  const auto unanswered = connection.onReply<xcb_get_input_focus_reply_t>(
      xcb_get_input_focus(connection.xcb()), [&](auto) { ++answers; });
  EXPECT_TRUE(driver.runUntil([&] { return losses > 0; }, 5s));
  const auto late = connection.onReply<xcb_get_input_focus_reply_t>(xcb_get_input_focus(connection.xcb()),
                                                                    [&](auto) { ++answers; });
  connection.flushSoon();
  connection.process();
  loop.runDue();

  EXPECT_EQ(losses, 1);
  EXPECT_EQ(answers, 0);
  EXPECT_FALSE(connection.isOpen());
  EXPECT_TRUE(loop.watchedDescriptors().empty());
  EXPECT_FALSE(loop.nextDue());
}

}  // namespace
}  // namespace tarnix::x11
