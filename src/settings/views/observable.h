#pragma once

#include <memory>
#include <utility>

#include "platform/combine/observable_object.h"
#include "platform/concurrency/task.h"
#include "settings/observation/publisher.h"
#include "settings/observation/updates.h"
#include "settings/store.h"

namespace tarnix::Defaults {

// How an observable hears of changes. Either way it tells its observers in a turn of the main run loop.
enum class ObservationRoad {
  updates,    // By a task that takes the setting's stream. Tells once at its start, too.
  publisher,  // By the changes that are sent before each write.
};

// Tells its observers when the stored value of a key has changed, by anyone and on any thread. Used on the
// main thread.
template <typename T>
class Observable final : public ObservableObject {
 public:
  static std::shared_ptr<Observable> make(Key<T> key, ObservationRoad road = ObservationRoad::updates) {
    std::shared_ptr<Observable> observable(new Observable(std::move(key), road));
    observable->observe();
    return observable;
  }

  const Key<T>& key() const { return key_; }
  // Observes another setting from now on. Nothing happens when it is the same one.
  void setKey(const Key<T>& key) {
    if (std::exchange(key_, key) != key) observe();
  }

  T value() const { return get(key_); }
  void setValue(const T& value) { set(key_, value); }

 private:
  Observable(Key<T> key, ObservationRoad road) : key_(std::move(key)), road_(road) {}

  std::weak_ptr<Observable> weakSelf() { return std::static_pointer_cast<Observable>(shared_from_this()); }

  void observe() {
    if (road_ == ObservationRoad::updates) {
      task_ = follow(weakSelf(), key_);
    } else {
      cancellable_ = hear(weakSelf(), key_);
    }
  }

  static Task follow(std::weak_ptr<Observable> observer, Key<T> key) {
    auto values = updates(key);
    while ([[maybe_unused]] const auto value = co_await values.next()) {
      const auto alive = observer.lock();
      if (!alive) co_return;
      alive->sendWillChange();
    }
  }

  static AnyCancellable hear(const std::weak_ptr<Observable>& observer, const Key<T>& key) {
    return publisher(key, ObservationOption::prior)
        .sink([observer, inbox = RunLoop::main().inbox()](const KeyChange<T>& change) {
          if (!change.isPrior) return;
          inbox->perform([observer] {
            if (const auto alive = observer.lock()) alive->sendWillChange();
          });
        });
  }

  Key<T> key_;
  const ObservationRoad road_;
  AnyCancellable cancellable_;
  Task task_;
};

}  // namespace tarnix::Defaults
