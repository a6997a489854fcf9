#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "platform/foundation/defaults/user_defaults.h"

namespace tarnix::test {

// Where user defaults are tried on a storage of some kind.
class DefaultsStage {
 public:
  virtual ~DefaultsStage() = default;
  // The settings of a process that starts with what is stored. The one before has ended by then.
  virtual std::shared_ptr<NSUserDefaults> start() = 0;
  virtual PropertyList::Dictionary stored() = 0;
};

// Notes what it is told, on whatever thread.
class NotingObserver final : public NSObject {
 public:
  struct Note {
    std::string key;
    NSKeyValueChangeDictionary change;
    void* context;
    std::thread::id thread;
  };

  void observeValueForKeyPath(const String& keyPath, const std::shared_ptr<NSObject>& object,
                              const NSKeyValueChangeDictionary* change, void* context) override;
  std::vector<Note> take();
  // The changes as text: "initial key: new", "prior key: old", "key: old -> new"; "-" for what is not told.
  std::vector<std::string> takeLines();

  std::function<void()> then;  // Called at the end of each note; may put an end to itself.

 private:
  std::mutex mutex_;
  std::vector<Note> notes_;
};

// What user defaults are held to on every storage; the tests of each instantiate it with a stage of theirs.
class UserDefaultsContract
    : public ::testing::TestWithParam<std::function<std::unique_ptr<DefaultsStage>()>> {
 protected:
  void restart();
  void set(const String& key, PropertyList::Value value) {
    defaults->setObject(PropertyList{std::move(value)}, key);
  }
  // `options` in letters: n(ew), o(ld), i(nitial), p(rior).
  std::shared_ptr<NotingObserver> observer(const String& key, const std::string& options,
                                           void* context = nullptr);

  std::unique_ptr<DefaultsStage> stage = GetParam()();
  std::shared_ptr<NSUserDefaults> defaults = stage->start();
};

}  // namespace tarnix::test
