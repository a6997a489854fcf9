#include "platform/concurrency/task.h"

#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "platform/concurrency/async_stream.h"
#include "platform/platform.h"
#include "platform/virtual_loop.h"

namespace tarnix {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Stream = AsyncStream<std::string>;

class TaskTest : public testing::Test {
 protected:
  struct Guard {
    std::vector<std::string>& log;
    ~Guard() { log.push_back("gone"); }
  };

  static Task take(Stream stream, std::vector<std::string>& log) {
    const Guard guard{log};
    while (const auto element = co_await stream.next()) log.push_back(*element);
    log.push_back("end");
  }
  Stream stream() {
    return Stream([this](const Stream::Continuation& continuation) {
      producer.emplace(continuation);
      continuation.onTermination([this] { log.push_back("terminated"); });
    });
  }
  void runLoop() { virtualLoop->advance({}); }

  std::shared_ptr<VirtualLoop> virtualLoop = std::make_shared<VirtualLoop>();
  PlatformScope scope{[this] {
    Platform platform;
    platform.mainRunLoop = {virtualLoop, &virtualLoop->loop};
    return platform;
  }()};
  std::vector<std::string> log;
  std::optional<Stream::Continuation> producer;
};

TEST_F(TaskTest, takesWhatWasYieldedAndEndsWithTheProducer) {
  Task task = take(stream(), log);
  producer->yield("a");
  EXPECT_THAT(log, IsEmpty());
  runLoop();
  producer->yield("b");
  producer->yield("c");
  EXPECT_THAT(log, ElementsAre("a"));
  producer->finish();
  producer->yield("late");
  runLoop();
  EXPECT_THAT(log, ElementsAre("a", "terminated", "b", "c", "end", "gone"));
  EXPECT_FALSE(task.isRunning());
  producer->finish();
  task.cancel();
  EXPECT_EQ(log.size(), 6U);
}

TEST_F(TaskTest, cancellingEndsItWhereItWaits) {
  Task task = take(stream(), log);
  runLoop();
  EXPECT_TRUE(task.isRunning());
  producer->yield("a");
  task.cancel();
  EXPECT_THAT(log, ElementsAre("gone", "terminated"));
  producer->yield("b");
  runLoop();
  EXPECT_EQ(log.size(), 2U);
  bool isRunAtOnce = false;
  producer->onTermination([&] { isRunAtOnce = true; });
  EXPECT_TRUE(isRunAtOnce);
}

TEST_F(TaskTest, mayDropItself) {
  struct Owner {
    Task task;
  };
  auto owner = std::make_unique<Owner>();
  const auto run = [](Stream elements, std::unique_ptr<Owner>& self,
                      std::vector<std::string>& notes) -> Task {
    const Guard guard{notes};
    while (const auto element = co_await elements.next()) {
      self.reset();
      notes.push_back(*element);
    }
  };
  owner->task = run(stream(), owner, log);
  producer->yield("a");
  producer->yield("never taken");
  runLoop();
  EXPECT_THAT(log, ElementsAre("a", "gone", "terminated"));
}

TEST_F(TaskTest, endsWithItsLoop) {
  Task task = take(stream(), log);
  runLoop();
  producer->yield("a");
  virtualLoop->loop.runDue();
  EXPECT_THAT(log, ElementsAre("a"));
  producer->yield("b");
  task = take(stream(), log);  // The new task is in place before the former one ends.
  EXPECT_THAT(log, ElementsAre("a", "gone", "terminated"));
}

TEST_F(TaskTest, theLoopTakesTasksOfOtherThreadsUntilItIsGone) {
  auto loop = std::make_unique<RunLoop>([] { return RunLoop::Instant(); });
  const auto inbox = loop->inbox();
  int wakes = 0, runs = 0;
  loop->setWake([&] { ++wakes; });
  std::thread([&] {
    inbox->perform([&] { ++runs; });
    inbox->perform([&] { ++runs; });
  }).join();
  EXPECT_EQ(wakes, 1);  // Once for each time that the inbox is no longer empty.
  EXPECT_EQ(loop->nextDue(), loop->now());
  loop->runDue();
  EXPECT_EQ(runs, 2);
  EXPECT_EQ(loop->nextDue(), std::nullopt);
  const auto held = std::make_shared<int>();
  inbox->perform([held] {});
  loop.reset();
  EXPECT_EQ(held.use_count(), 1);
  inbox->perform([held] {});
  EXPECT_EQ(held.use_count(), 1);
  EXPECT_EQ(wakes, 2);
}

}  // namespace
}  // namespace tarnix
