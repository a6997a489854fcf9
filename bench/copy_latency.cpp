// Tells how long after each change of the clipboard's owner a window looks different: prints `ready`, then
// for each change `shown MILLISECONDS`, or `unchanged` when it looks the same for too long. Ends when its
// input does.
//
// Usage: tarnix_copy_latency WINDOW X Y WIDTH HEIGHT [LIMIT-IN-MILLISECONDS]

#include <unistd.h>
#include <xcb/xfixes.h>

#include <cstdio>
#include <cstdlib>
#include <optional>
#include <span>

#include "bench/display_client.h"

namespace tarnix::bench {
namespace {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

constexpr auto kGlance = 1ms;
constexpr auto kQuietGlance = 100ms;
// More than the program's poll lets pass between two things that it shows.
constexpr auto kRest = 350ms;

class CopyLatency {
 public:
  CopyLatency(xcb_window_t window, Region region, Clock::duration limit)
      : window_(window), region_(region), limit_(limit) {
    const auto* extension = xcb_get_extension_data(display_.connection(), &xcb_xfixes_id);
    ownerChanged_ = extension->first_event + XCB_XFIXES_SELECTION_NOTIFY;
    const Held<xcb_xfixes_query_version_reply_t> version(xcb_xfixes_query_version_reply(
        display_.connection(), xcb_xfixes_query_version(display_.connection(), 5, 0), nullptr));
    xcb_xfixes_select_selection_input(display_.connection(), display_.root(), display_.atom("CLIPBOARD"),
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER);
  }

  void run() {
    before_ = display_.picture(window_, region_);
    say("ready");
    while (!isInputClosed() && !display_.isGone()) {
      const auto event = display_.nextEvent(copied_ ? kGlance : kQuietGlance, STDIN_FILENO);
      // Of several changes in a row the first one counts.
      if (event && (event->response_type & 0x7f) == ownerChanged_ && !copied_) copied_ = Clock::now();
      look();
    }
  }

 private:
  static void say(const char* line) {
    std::puts(line);
    std::fflush(stdout);
  }

  void look() {
    auto picture = display_.picture(window_, region_);
    const Clock::time_point now = Clock::now();
    if (copied_ && picture != before_) changed_ = now;
    before_ = std::move(picture);
    if (!copied_) return;
    if (changed_ && now - *changed_ > kRest) {
      std::printf("shown %.3f\n", std::chrono::duration<double, std::milli>(*changed_ - *copied_).count());
      std::fflush(stdout);
    } else if (!changed_ && now - *copied_ > limit_) {
      say("unchanged");
    } else {
      return;
    }
    copied_.reset();
    changed_.reset();
  }

  DisplayClient display_;
  xcb_window_t window_;
  Region region_;
  Clock::duration limit_;
  int ownerChanged_ = 0;
  std::vector<std::uint8_t> before_;
  std::optional<Clock::time_point> copied_;
  std::optional<Clock::time_point> changed_;
};

int runWith(std::span<char*> arguments) {
  if (arguments.size() < 6) {
    std::fputs("Usage: tarnix_copy_latency WINDOW X Y WIDTH HEIGHT [LIMIT-IN-MILLISECONDS]\n", stderr);
    return 2;
  }
  const auto number = [&](std::size_t i) { return std::strtoul(arguments[i], nullptr, 10); };
  const Region region{static_cast<std::int16_t>(number(2)), static_cast<std::int16_t>(number(3)),
                      static_cast<std::uint16_t>(number(4)), static_cast<std::uint16_t>(number(5))};
  const std::chrono::milliseconds limit(arguments.size() > 6 ? number(6) : 3000);
  CopyLatency(static_cast<xcb_window_t>(number(1)), region, limit).run();
  return 0;
}

}  // namespace
}  // namespace tarnix::bench

int main(int argumentCount, char** arguments) {
  return tarnix::bench::runWith({arguments, static_cast<std::size_t>(argumentCount)});
}
