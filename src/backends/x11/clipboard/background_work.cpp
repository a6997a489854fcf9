#include "backends/x11/clipboard/background_work.h"

#include <utility>

namespace tarnix::x11 {

BackgroundWork::~BackgroundWork() {
  cancel();
  {
    const std::lock_guard lock(mutex_);
    isEnding_ = true;
  }
  changed_.notify_one();
  if (thread_.joinable()) thread_.join();
}

void BackgroundWork::run(Work work) {
  isWanted_ = std::make_shared<const bool>(true);
  {
    const std::lock_guard lock(mutex_);
    next_ = Job{std::move(work), isWanted_};
  }
  if (!thread_.joinable()) thread_ = std::thread([this] { goOn(); });
  changed_.notify_one();
}

void BackgroundWork::cancel() {
  isWanted_.reset();
  const std::lock_guard lock(mutex_);
  next_.reset();
}

void BackgroundWork::goOn() {
  std::unique_lock lock(mutex_);
  while (true) {
    changed_.wait(lock, [this] { return isEnding_ || next_.has_value(); });
    if (isEnding_) return;
    const Job job = *std::exchange(next_, std::nullopt);
    lock.unlock();
    inbox_->perform([isWanted = job.isWanted, finish = job.work()] {
      if (!isWanted.expired()) finish();
    });
    lock.lock();
  }
}

}  // namespace tarnix::x11
