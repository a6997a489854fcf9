// Starts a program, waits until its first window is on screen with something drawn in it, prints the
// milliseconds that the window and its content took, and ends the program.
//
// Usage: tarnix_start_time PROGRAM [ARGUMENT]...

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstring>
#include <optional>
#include <set>
#include <thread>

#include "bench/display_client.h"

namespace tarnix::bench {
namespace {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

constexpr auto kGlance = 1ms;
constexpr auto kLongestStart = 10s;
// A window without content has the one colour of what lies behind it; text drawn with smooth edges has many.
constexpr std::size_t kColoursOfContent = 8;

class StartTime {
 public:
  StartTime() { display_.selectEvents(display_.root(), XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY); }

  // False when the program showed nothing in time.
  bool measure(char** command) {
    display_.nextEvent(0us);
    const auto start = Clock::now();
    pid_t process = 0;
    if (posix_spawnp(&process, command[0], nullptr, nullptr, command, environ) != 0) return false;
    while (!contentShown_ && Clock::now() < start + kLongestStart) look(static_cast<std::uint32_t>(process));
    end(process);
    if (!contentShown_) return false;
    const auto since = [start](auto moment) {
      return std::chrono::duration<double, std::milli>(moment - start).count();
    };
    std::printf("%.2f %.2f\n", since(*mapped_), since(*contentShown_));
    return true;
  }

 private:
  void look(std::uint32_t process) {
    for (auto event = display_.nextEvent(kGlance); event; event = display_.nextEvent(0us)) note(*event);
    for (const xcb_window_t window : created_) {
      if (!display_.isOnScreen(window) || display_.processOf(window) != process) continue;
      if (!mapped_) mapped_ = Clock::now();
      if (!contentShown_ && hasContent(window)) contentShown_ = Clock::now();
    }
  }

  void note(const xcb_generic_event_t& event) {
    if ((event.response_type & 0x7f) != XCB_CREATE_NOTIFY) return;
    xcb_create_notify_event_t creation;
    std::memcpy(&creation, &event, sizeof creation);
    if (creation.override_redirect == 0) created_.insert(creation.window);
  }

  // Looks at the middle and what is right of it, which a first picture covers in the programs compared.
  bool hasContent(xcb_window_t window) const {
    const Region whole = display_.extent(window);
    const auto tenths = [](int length, int count) { return length * count / 10; };
    const Region middle{static_cast<std::int16_t>(tenths(whole.width, 4)), 0,
                        static_cast<std::uint16_t>(tenths(whole.width, 3)), whole.height};
    const auto bytes = display_.picture(window, middle);
    std::set<std::uint32_t> colours;
    for (std::size_t i = 0; i + 4 <= bytes.size() && colours.size() < kColoursOfContent; i += 4) {
      std::uint32_t pixel = 0;
      std::memcpy(&pixel, &bytes[i], sizeof pixel);
      colours.insert(pixel);
    }
    return colours.size() >= kColoursOfContent;
  }

  static void end(pid_t process) {
    kill(process, SIGTERM);
    for (int tries = 0; tries < 200; ++tries) {
      if (waitpid(process, nullptr, WNOHANG) == process) return;
      std::this_thread::sleep_for(10ms);
    }
    kill(process, SIGKILL);
    waitpid(process, nullptr, 0);
  }

  DisplayClient display_;
  std::set<xcb_window_t> created_;
  std::optional<Clock::time_point> mapped_;
  std::optional<Clock::time_point> contentShown_;
};

}  // namespace
}  // namespace tarnix::bench

int main(int argumentCount, char** arguments) {
  if (argumentCount < 2) {
    std::fputs("Usage: tarnix_start_time PROGRAM [ARGUMENT]...\n", stderr);
    return 2;
  }
  return tarnix::bench::StartTime().measure(arguments + 1) ? 0 : 1;
}
