#include "backends/qt/termination_signals.h"

#include <fcntl.h>
#include <unistd.h>

#include <QSocketNotifier>
#include <cerrno>

namespace tarnix::qt {
namespace {

// What a signal handler may touch.
volatile std::sig_atomic_t signalPipe = -1;

extern "C" void passSignalOn(int) {
  const int savedError = errno;
  const char byte = 0;
  // A full pipe already tells enough.
  [[maybe_unused]] const auto written = write(signalPipe, &byte, 1);
  errno = savedError;
}

}  // namespace

TerminationSignals::TerminationSignals(std::function<void()> terminate) {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0) return;
  readingEnd_ = ends[0];
  writingEnd_ = ends[1];
  signalPipe = writingEnd_;
  notifier_ = std::make_unique<QSocketNotifier>(readingEnd_, QSocketNotifier::Read);
  QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(),
                   [this, terminate = std::move(terminate)] {
                     char byte = 0;
                     if (read(readingEnd_, &byte, 1) > 0) terminate();
                   });
  struct sigaction action {};
  action.sa_handler = passSignalOn;
  action.sa_flags = SA_RESTART;
  for (std::size_t i = 0; i < kSignals.size(); ++i) sigaction(kSignals[i], &action, &former_[i]);
}

TerminationSignals::~TerminationSignals() {
  if (!notifier_) return;
  for (std::size_t i = 0; i < kSignals.size(); ++i) sigaction(kSignals[i], &former_[i], nullptr);
  notifier_.reset();
  signalPipe = -1;
  close(readingEnd_);
  close(writingEnd_);
}

}  // namespace tarnix::qt
