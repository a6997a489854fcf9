#include "backends/linux/utility_queue.h"

#include <utility>

namespace tarnix::linux_desktop {

UtilityQueue::~UtilityQueue() {
  {
    const std::lock_guard lock(mutex_);
    isEnding_ = true;
  }
  changed_.notify_one();
  if (thread_.joinable()) thread_.join();
}

void UtilityQueue::async(Task task) {
  const std::lock_guard lock(mutex_);
  tasks_.push_back(std::move(task));
  if (!thread_.joinable()) thread_ = std::thread([this] { goOn(); });
  changed_.notify_one();
}

void UtilityQueue::goOn() {
  std::unique_lock lock(mutex_);
  while (true) {
    changed_.wait(lock, [this] { return isEnding_ || !tasks_.empty(); });
    if (tasks_.empty()) return;
    {
      const Task task = std::move(tasks_.front());
      tasks_.pop_front();
      lock.unlock();
      task();
    }
    lock.lock();
  }
}

}  // namespace tarnix::linux_desktop
