#pragma once

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

#include "platform/foundation/run_loop.h"

namespace tarnix::x11 {

// Does what takes longer than a frame on a thread of its own, which begins with the first work and is waited
// for at the end.
class BackgroundWork {
 public:
  using Finish = std::function<void()>;
  using Work = std::function<Finish()>;

  explicit BackgroundWork(RunLoop& loop) : inbox_(loop.inbox()) {}
  BackgroundWork(const BackgroundWork&) = delete;
  BackgroundWork& operator=(const BackgroundWork&) = delete;
  ~BackgroundWork();

  // Calls `work` on the thread, and what it gives in a later turn of the loop. Whatever was to be done before
  // is called off. `work` must share nothing that changes, and not throw.
  void run(Work work);
  // Nothing is called any more.
  void cancel();

 private:
  struct Job {
    Work work;
    std::weak_ptr<const bool> isWanted;
  };
  void goOn();

  std::shared_ptr<RunLoop::Inbox> inbox_;
  std::shared_ptr<const bool> isWanted_;  // For as long as the latest job is. On the loop's thread only.
  std::mutex mutex_;
  std::condition_variable changed_;
  std::optional<Job> next_;
  bool isEnding_ = false;
  std::thread thread_;
};

}  // namespace tarnix::x11
