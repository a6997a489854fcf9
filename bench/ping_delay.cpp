// Asks windows again and again whether their programs still answer (_NET_WM_PING of the Extended Window
// Manager Hints, which a toolkit answers from its event loop), so that the longest wait tells how long the
// loop was busy. Ends when its input does; prints for each window a line `WINDOW PINGS MEDIAN 99TH-PERCENTILE
// LONGEST`, in milliseconds. A ping that is never answered counts with the time waited for it.
//
// Usage: tarnix_ping_delay WINDOW...

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <span>
#include <unordered_map>

#include "bench/display_client.h"

namespace tarnix::bench {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::duration_cast;
using namespace std::chrono_literals;

constexpr auto kPingInterval = 5ms;
constexpr auto kLastPatience = 2s;

struct Pinged {
  xcb_window_t window;
  std::vector<double> milliseconds;  // By round.
};

class PingDelay {
 public:
  explicit PingDelay(std::vector<Pinged> windows)
      : windows_(std::move(windows)),
        protocols_(display_.atom("WM_PROTOCOLS")),
        ping_(display_.atom("_NET_WM_PING")) {
    // Answers go to the root window, under one mask or the other by toolkit.
    display_.selectEvents(display_.root(),
                          XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_STRUCTURE_NOTIFY);
  }

  void run() {
    std::puts("ready");
    std::fflush(stdout);
    auto next = Clock::now();
    while (!isInputClosed() && !display_.isGone()) {
      if (next <= Clock::now()) {
        for (std::size_t i = 0; i < windows_.size(); ++i) send(i);
        ++rounds_;
        next = std::max(next + kPingInterval, Clock::now());
      }
      receiveUntil(next);
    }
    const auto end = Clock::now() + kLastPatience;
    while (!unanswered_.empty() && Clock::now() < end)
      receiveUntil(std::min(end, Clock::now() + kPingInterval));
    for (const auto& [number, sent] : unanswered_) count(sent);
    const double longestExcess = excess();
    for (Pinged& each : windows_) print(each);
    std::printf("excess %.3f\n", longestExcess);
  }

 private:
  struct Sent {
    std::size_t place;
    std::size_t round;
    Clock::time_point when;
  };

  void send(std::size_t place) {
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = windows_[place].window;
    message.type = protocols_;
    message.data.data32[0] = ping_;
    message.data.data32[1] = ++lastNumber_;
    message.data.data32[2] = windows_[place].window;
    windows_[place].milliseconds.push_back(0);
    unanswered_[lastNumber_] = {place, rounds_, Clock::now()};
    xcb_send_event(display_.connection(), 0, windows_[place].window, XCB_EVENT_MASK_NO_EVENT,
                   reinterpret_cast<const char*>(&message));
  }

  void receiveUntil(Clock::time_point end) {
    do {
      const auto patience = duration_cast<std::chrono::microseconds>(end - Clock::now());
      const auto event = display_.nextEvent(std::max(patience, std::chrono::microseconds(0)));
      if (event) receive(*event);
    } while (Clock::now() < end && !display_.isGone());
  }

  void receive(const xcb_generic_event_t& event) {
    if ((event.response_type & 0x7f) != XCB_CLIENT_MESSAGE) return;
    xcb_client_message_event_t message;
    std::memcpy(&message, &event, sizeof message);
    if (message.type != protocols_ || message.data.data32[0] != ping_) return;
    const auto found = unanswered_.find(message.data.data32[1]);
    if (found == unanswered_.end()) return;
    count(found->second);
    unanswered_.erase(found);
  }

  void count(const Sent& sent) {
    windows_[sent.place].milliseconds[sent.round] =
        std::chrono::duration<double, std::milli>(Clock::now() - sent.when).count();
  }

  double excess() const {
    const auto& own = windows_.front().milliseconds;
    const auto& others = windows_.back().milliseconds;
    double longest = 0;
    for (std::size_t i = 0; i < own.size(); ++i) longest = std::max(longest, own[i] - others[i]);
    return longest;
  }

  static void print(Pinged& pinged) {
    auto& delays = pinged.milliseconds;
    if (delays.empty()) return;
    std::ranges::sort(delays);
    std::printf("%u %zu %.3f %.3f %.3f\n", pinged.window, delays.size(), delays[delays.size() / 2],
                delays[delays.size() * 99 / 100], delays.back());
  }

  DisplayClient display_;
  std::vector<Pinged> windows_;
  xcb_atom_t protocols_;
  xcb_atom_t ping_;
  std::uint32_t lastNumber_ = 0;
  std::size_t rounds_ = 0;
  std::unordered_map<std::uint32_t, Sent> unanswered_;
};

}  // namespace
}  // namespace tarnix::bench

int main(int argumentCount, char** arguments) {
  std::vector<tarnix::bench::Pinged> windows;
  for (char* each : std::span(arguments + 1, static_cast<std::size_t>(argumentCount - 1))) {
    windows.push_back({static_cast<xcb_window_t>(std::strtoul(each, nullptr, 10)), {}});
  }
  if (windows.empty()) {
    std::fputs("Usage: tarnix_ping_delay WINDOW...\n", stderr);
    return 2;
  }
  tarnix::bench::PingDelay(std::move(windows)).run();
}
