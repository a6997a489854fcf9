#pragma once

#include <deque>
#include <set>
#include <utility>
#include <vector>

#include "platform/foundation/dispatch_queue.h"
#include "platform/foundation/file_manager.h"

namespace tarnix::simulated {

// Files that are there or not.
class FileManager final : public NSFileManager {
 public:
  void add(const URL& url) { files_.insert(url); }
  bool has(const URL& url) const { return files_.contains(url); }
  // What was asked to be removed, in order, there or not.
  const std::vector<URL>& removals() const { return removals_; }

  bool removeItemAtURL(const URL& url) override {
    removals_.push_back(url);
    return files_.erase(url) > 0;
  }

 private:
  std::set<URL> files_;
  std::vector<URL> removals_;
};

// Holds its tasks until it is told to do them.
class DispatchQueue final : public tarnix::DispatchQueue {
 public:
  void async(Task task) override { tasks_.push_back(std::move(task)); }
  std::size_t pending() const { return tasks_.size(); }
  void runAll() {
    while (!tasks_.empty()) {
      const Task task = std::move(tasks_.front());
      tasks_.pop_front();
      task();
    }
  }

 private:
  std::deque<Task> tasks_;
};

}  // namespace tarnix::simulated
