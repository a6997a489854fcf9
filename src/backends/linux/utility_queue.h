#pragma once

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>

#include "platform/foundation/dispatch_queue.h"

namespace tarnix::linux_desktop {

// One thread, which begins with the first task and takes one after the other. The queue's end waits for all
// that were given to it.
class UtilityQueue final : public DispatchQueue {
 public:
  UtilityQueue() = default;
  UtilityQueue(const UtilityQueue&) = delete;
  UtilityQueue& operator=(const UtilityQueue&) = delete;
  ~UtilityQueue() override;

  void async(Task task) override;

 private:
  void goOn();

  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<Task> tasks_;
  bool isEnding_ = false;
  std::thread thread_;
};

}  // namespace tarnix::linux_desktop
