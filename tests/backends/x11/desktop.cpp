#include "backends/x11/desktop.h"

#include <time.h>

#include <algorithm>

namespace tarnix::x11::testing {

using namespace std::chrono_literals;

namespace {

// Time that this thread has worked; waiting, and other programs' work, don't count.
RunLoop::Duration timeWorked() {
  timespec time{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

}  // namespace

bool Desktop::runUntil(const std::function<bool()>& condition, RunLoop::Duration limit) {
  RunLoop::Duration before = timeWorked();
  const auto check = [&] {
    longestTurn = std::max(longestTurn, timeWorked() - before);
    allTurns += timeWorked() - before;
    const bool holds = condition();
    before = timeWorked();
    return holds;
  };
  return driver.runUntil(check, limit);
}

void Desktop::open(const FetchLimits& limits) {
  auto opened = Session::open(server.display(), loop, limits);
  ASSERT_TRUE(opened) << opened.error().detail;
  session = std::move(*opened);
  pasteboard = session->pasteboard();
  ASSERT_TRUE(pasteboard->awaitFirstSnapshot(5s));
}

void Desktop::settle() {
  bool isAnswered = false;
  Connection& connection = session->connection();
  const auto answer = connection.onReply<xcb_get_input_focus_reply_t>(xcb_get_input_focus(connection.xcb()),
                                                                      [&](auto) { isAnswered = true; });
  EXPECT_TRUE(runUntil([&] { return isAnswered; }));
  // Polls that this has released come at their own interval.
  bool isOver = false;
  const auto moment = loop.scheduleOnce(5ms, [&] { isOver = true; });
  EXPECT_TRUE(runUntil([&] { return isOver; }));
}

test::Process& Desktop::start(const Command& command) {
  return programs.emplace_back(command,
                               test::Process::Options{.environment = {{"DISPLAY", server.display()}}});
}

bool Desktop::copy(const Command& command, std::string_view input) {
  const int count = pasteboard->changeCount();
  start(command).feed(input);
  return runUntilChange(count);
}

std::string Desktop::outputOf(const Command& command) {
  test::Process& program = start(command);
  std::string output;
  // The loop is woken now and then to see whether the program has gone on.
  const auto tick = loop.scheduleTimer(5ms, {}, [] {});
  EXPECT_TRUE(runUntil([&] {
    output += program.readAll(0ms);
    return !program.isRunning();
  })) << command[0];
  return output + program.readAll(100ms);
}

test::Process& Desktop::owner(Command arguments) {
  arguments.insert(arguments.begin(), TARNIX_HOSTILE_OWNER);
  test::Process& program = start(arguments);
  EXPECT_TRUE(program.waitForLine("owner", 10s)) << arguments[1];
  return program;
}

std::string Desktop::text() const {
  return pasteboard->stringForType(NSPasteboardTypeString).value_or("(no text)").str();
}

std::vector<std::string> Desktop::types(std::size_t index) const {
  std::vector<std::string> names;
  for (const auto& type : items().at(index)->types()) names.push_back(type.rawValue.str());
  return names;
}

std::string Desktop::path(std::size_t index) const {
  return items().at(index)->stringForType({"public.file-url"}).value_or("(no file)").str();
}

}  // namespace tarnix::x11::testing
