#pragma once

#include <array>
#include <csignal>
#include <functional>
#include <memory>

class QSocketNotifier;

namespace tarnix::qt {

// Turns SIGTERM, SIGINT and SIGHUP into a call from the event loop. At most one object at a time; the former
// handlers come back at its end. Where the system gives no pipe, they stay, and it is not listening.
class TerminationSignals {
 public:
  explicit TerminationSignals(std::function<void()> terminate);
  TerminationSignals(const TerminationSignals&) = delete;
  TerminationSignals& operator=(const TerminationSignals&) = delete;
  ~TerminationSignals();

  bool isListening() const { return notifier_ != nullptr; }

  static constexpr std::array kSignals{SIGTERM, SIGINT, SIGHUP};

 private:
  int readingEnd_ = -1;
  int writingEnd_ = -1;
  std::unique_ptr<QSocketNotifier> notifier_;
  std::array<struct sigaction, kSignals.size()> former_{};
};

}  // namespace tarnix::qt
