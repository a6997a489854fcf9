#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <list>
#include <string>
#include <vector>

#include "backends/linux/poll_driver.h"
#include "backends/x11/clipboard/pasteboard.h"
#include "backends/x11/session.h"
#include "backends/x11/x_server.h"
#include "support/process.h"

namespace tarnix::x11::testing {

// An X server with the backend on it and other programs beside it, driven by the test.
class Desktop : public ::testing::Test {
 protected:
  using Command = std::vector<std::string>;
  static constexpr std::chrono::seconds kLimit{20};

  void SetUp() override { open(); }
  // Owners get less time than from the program, so that no test has to wait for it.
  void open(const FetchLimits& limits = {std::chrono::seconds(1), std::chrono::seconds(5)});

  // Notes for how long the turns of the loop have used the processor: the longest one and all together.
  bool runUntil(const std::function<bool()>& condition, RunLoop::Duration limit = kLimit);
  bool runUntilChange(int count) {
    return runUntil([&] { return pasteboard->changeCount() > count; });
  }
  // Runs until what the server has sent so far, and what follows from it, is done.
  void settle();

  // Starts a program on this display. It ends with the test.
  test::Process& start(const Command& command);
  // Lets a program copy and waits until that is seen.
  bool copy(const Command& command, std::string_view input = {});
  bool copyText(std::string_view text) { return copy({"xclip", "-selection", "clipboard", "-i"}, text); }
  // What a program prints until it ends, while this one serves it.
  std::string outputOf(const Command& command);
  std::string pastedAs(const std::string& target) {
    return outputOf({"xclip", "-selection", "clipboard", "-o", "-t", target});
  }

  // A scripted owner; it has the clipboard when this returns.
  test::Process& owner(Command arguments);

  std::string text() const;
  std::vector<std::shared_ptr<NSPasteboardItem>> items() const { return *pasteboard->pasteboardItems(); }
  std::vector<std::string> types(std::size_t index = 0) const;
  std::string path(std::size_t index) const;

  XServer server;
  RunLoop loop{linux_desktop::steadyClock()};
  linux_desktop::PollDriver driver{loop};
  std::unique_ptr<Session> session;
  std::shared_ptr<Pasteboard> pasteboard;
  std::list<test::Process> programs;
  RunLoop::Duration longestTurn{};
  RunLoop::Duration allTurns{};
};

}  // namespace tarnix::x11::testing
