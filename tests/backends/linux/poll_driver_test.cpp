#include "backends/linux/poll_driver.h"

#include <gmock/gmock.h>
#include <pthread.h>
#include <signal.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <chrono>
#include <thread>

namespace tarnix::linux_desktop {
namespace {

using namespace std::chrono_literals;

// A pipe whose ends close with it.
class Pipe {
 public:
  Pipe() { EXPECT_EQ(::pipe(ends_.data()), 0); }
  ~Pipe() {
    ::close(readEnd());
    closeWriteEnd();
  }
  int readEnd() const { return ends_[0]; }
  void write(std::string_view text) { EXPECT_EQ(::write(ends_[1], text.data(), text.size()), ssize(text)); }
  void closeWriteEnd() {
    if (ends_[1] >= 0) ::close(ends_[1]);
    ends_[1] = -1;
  }
  std::string read() {
    std::array<char, 64> buffer;
    const ssize_t count = ::read(readEnd(), buffer.data(), buffer.size());
    return count > 0 ? std::string(buffer.data(), static_cast<std::size_t>(count)) : std::string();
  }

 private:
  std::array<int, 2> ends_{};
};

class PollDriverTest : public ::testing::Test {
 protected:
  RunLoop loop_{steadyClock()};
  PollDriver driver_{loop_};
};

TEST_F(PollDriverTest, runsTimersUntilTheConditionHolds) {
  int firings = 0;
  const auto timer = loop_.scheduleTimer(2ms, {}, [&] { ++firings; });
  EXPECT_TRUE(driver_.runUntil([&] { return firings == 3; }, 5s));
  EXPECT_EQ(firings, 3);
}

TEST_F(PollDriverTest, givesUpWhenTheLimitHasPassed) {
  const RunLoop::Instant start = loop_.now();
  EXPECT_FALSE(driver_.runUntil([] { return false; }, 20ms));
  EXPECT_GE(loop_.now() - start, 20ms);
}

TEST_F(PollDriverTest, tellsReadersOfDataAndOfAHangUp) {
  Pipe pipe;
  std::vector<std::string> received;
  const auto watch = loop_.watchDescriptor(pipe.readEnd(), [&] { received.push_back(pipe.read()); });
  pipe.write("first");
  EXPECT_TRUE(driver_.runUntil([&] { return received.size() == 1; }, 5s));
  pipe.closeWriteEnd();
  EXPECT_TRUE(driver_.runUntil([&] { return received.size() == 2; }, 5s));
  EXPECT_THAT(received, ::testing::ElementsAre("first", ""));
}

TEST_F(PollDriverTest, aWatchDroppedInTheSameTurnIsNotCalled) {
  Pipe first, second;
  first.write("x");
  second.write("x");
  RunLoop::Subscription firstWatch, secondWatch;
  int calls = 0;
  firstWatch = loop_.watchDescriptor(first.readEnd(), [&] {
    ++calls, secondWatch.cancel();
    first.read();
  });
  secondWatch = loop_.watchDescriptor(second.readEnd(), [&] {
    ++calls, firstWatch.cancel();
    second.read();
  });
  driver_.runUntil([&] { return calls > 1; }, 20ms);
  EXPECT_EQ(calls, 1);
}

TEST_F(PollDriverTest, stopEndsTheRunAndTheNextRunGoesOn) {
  int stops = 0;
  for (int round = 0; round < 2; ++round) {
    loop_.performAfter(1ms, [&] { ++stops, driver_.stop(); });
    driver_.run();
  }
  EXPECT_EQ(stops, 2);
}

TEST_F(PollDriverTest, survivesSignalsWhileItWaits) {
  struct sigaction action {};
  action.sa_handler = [](int) {};
  struct sigaction former {};
  ::sigaction(SIGUSR1, &action, &former);
  std::thread sender([target = ::pthread_self()] {
    for (int i = 0; i < 5; ++i) {
      std::this_thread::sleep_for(2ms);
      ::pthread_kill(target, SIGUSR1);
    }
  });
  bool fired = false;
  loop_.performAfter(20ms, [&] { fired = true; });
  EXPECT_TRUE(driver_.runUntil([&] { return fired; }, 5s));
  sender.join();
  ::sigaction(SIGUSR1, &former, nullptr);
}

// Without a wake-up, each of the tasks would be found at the end of the limit only.
TEST_F(PollDriverTest, aTaskFromAnotherThreadEndsTheWait) {
  constexpr int kTasks = 100;
  std::atomic<int> done = 0;
  std::thread::id ranOn;
  std::thread other([&, inbox = loop_.inbox()] {
    for (int i = 1; i <= kTasks; ++i) {
      inbox->perform([&] { ranOn = std::this_thread::get_id(), ++done; });
      while (done < i) std::this_thread::yield();  // So that the driver waits again.
    }
  });
  const RunLoop::Instant start = loop_.now();
  EXPECT_TRUE(driver_.runUntil([&] { return done == kTasks; }, 20s));
  EXPECT_LT(loop_.now() - start, 15s);
  done = kTasks;  // Lets the other thread end, whatever came of it.
  other.join();
  EXPECT_EQ(ranOn, std::this_thread::get_id());
}

TEST_F(PollDriverTest, aTaskThatComesBetweenTwoTurnsIsFoundByTheNext) {
  int done = 0;
  std::thread([&, inbox = loop_.inbox()] { inbox->perform([&] { ++done; }); }).join();
  const RunLoop::Instant start = loop_.now();
  EXPECT_TRUE(driver_.runUntil([&] { return done == 1; }, 20s));
  EXPECT_LT(loop_.now() - start, 15s);
  int turns = 0;
  driver_.runUntil([&] { return ++turns == 10; }, 20ms);
  EXPECT_LT(turns, 10) << "it sleeps again";
}

TEST_F(PollDriverTest, driversMayComeAndGoWhileOthersPostTasks) {
  constexpr int kTasks = 2000;
  int done = 0;
  std::thread other([&, inbox = loop_.inbox()] {
    for (int i = 0; i < kTasks; ++i) inbox->perform([&] { ++done; });
  });
  for (int i = 0; i < 200; ++i) PollDriver(loop_).runUntil([] { return false; }, 10us);
  other.join();
  PollDriver last(loop_);
  EXPECT_TRUE(last.runUntil([&] { return done == kTasks; }, 20s));
}

TEST(WallClock, countsFromTheReferenceDate) {
  const double expected = static_cast<double>(std::time(nullptr) - 978'307'200);
  EXPECT_NEAR(wallClockNow().sinceReferenceDate.count(), expected, 2);
}

}  // namespace
}  // namespace tarnix::linux_desktop
