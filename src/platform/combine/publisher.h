#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <type_traits>
#include <utility>
#include <vector>

namespace tarnix {

// What is sent where there is nothing to tell but that something happened.
struct Void {
  friend bool operator==(const Void&, const Void&) = default;
};

// A running subscription. Dropping or cancelling it ends the deliveries, also from inside one.
class [[nodiscard]] AnyCancellable {
 public:
  AnyCancellable() = default;
  explicit AnyCancellable(std::function<void()> cancel) : cancel_(std::move(cancel)) {}
  AnyCancellable(AnyCancellable&& other) noexcept : cancel_(std::exchange(other.cancel_, nullptr)) {}
  AnyCancellable& operator=(AnyCancellable&& other) noexcept {
    // The former subscription ends after the new one is in place.
    auto former = std::exchange(cancel_, std::exchange(other.cancel_, nullptr));
    if (former) former();
    return *this;
  }
  ~AnyCancellable() { cancel(); }

  void cancel() {
    if (auto cancel = std::exchange(cancel_, nullptr)) cancel();
  }

 private:
  std::function<void()> cancel_;
};

// A source of values that never fails. Each subscription runs a chain of its own, which does not need the
// publisher any more. Values are delivered synchronously on the thread that sends them.
template <typename T>
class Publisher {
 public:
  using Receive = std::function<void(const T&)>;
  using Subscribe = std::function<AnyCancellable(Receive)>;

  explicit Publisher(Subscribe subscribe)
      : subscribe_(std::make_shared<const Subscribe>(std::move(subscribe))) {}

  // Sends nothing and does not complete.
  static Publisher empty() {
    return Publisher([](const Receive&) { return AnyCancellable(); });
  }

  [[nodiscard]] AnyCancellable sink(Receive receive) const {
    const auto subscribe = subscribe_;  // A value that arrives during the subscription may end this object.
    return (*subscribe)(std::move(receive));
  }

  // Sends `value` during the subscription, before anything of this publisher. The receiver can't call the
  // subscription off by then, since it has not been given it yet.
  Publisher prepend(T value) const {
    return Publisher([upstream = *this, value = std::move(value)](Receive receive) {
      receive(value);
      return upstream.sink(std::move(receive));
    });
  }

  // Passes what `transform`, which gives an optional, makes of each value; nothing where that is absent.
  template <typename Transform>
  auto compactMap(Transform transform) const {
    using Output = typename std::invoke_result_t<Transform, const T&>::value_type;
    return Publisher<Output>([upstream = *this, transform](typename Publisher<Output>::Receive receive) {
      return upstream.sink([transform, receive = std::move(receive)](const T& value) {
        if (auto output = transform(value)) receive(*output);
      });
    });
  }

  template <typename Transform>
  auto map(Transform transform) const {
    using Output = std::invoke_result_t<Transform, const T&>;
    return compactMap([transform](const T& value) { return std::optional<Output>(transform(value)); });
  }

  // Passes what either sends; subscribes to this one first.
  Publisher merge(const Publisher& other) const {
    return Publisher([first = *this, other](const Receive& receive) {
      auto both = std::make_shared<std::pair<AnyCancellable, AnyCancellable>>();
      both->first = first.sink(receive);
      both->second = other.sink(receive);
      return AnyCancellable([both] {
        both->first.cancel();
        both->second.cancel();
      });
    });
  }

  // Passes a value only if it differs from the one passed last. The first always passes.
  Publisher removeDuplicates() const {
    return Publisher([upstream = *this](Receive receive) {
      const auto last = std::make_shared<std::optional<T>>();
      return upstream.sink([last, receive = std::move(receive)](const T& value) {
        if (*last == value) return;
        *last = value;
        receive(value);
      });
    });
  }

 private:
  std::shared_ptr<const Subscribe> subscribe_;
};

// Where values enter. Sends over a snapshot of the subscribers: one that is dropped during a send gets
// nothing more, one that is added waits for the next send. The subject itself may be destroyed by a
// subscriber; the others of the snapshot still get the value.
template <typename T>
class Subject {
 public:
  using Receive = typename Publisher<T>::Receive;

  Subject() = default;
  Subject(const Subject&) = delete;
  Subject& operator=(const Subject&) = delete;

  // False when a subscriber has destroyed this subject.
  bool send(const T& value) {
    const std::weak_ptr<Subscribers> alive = subscribers_;
    const Subscribers snapshot = *subscribers_;
    for (const auto& subscriber : snapshot) {
      if (subscriber->isActive) subscriber->receive(value);
    }
    return !alive.expired();
  }

  Publisher<T> publisher() const {
    return Publisher<T>([weak = std::weak_ptr(subscribers_)](Receive receive) {
      const auto subscribers = weak.lock();
      if (!subscribers) return AnyCancellable();
      const auto subscriber = std::make_shared<Subscriber>(std::move(receive));
      subscribers->push_back(subscriber);
      return AnyCancellable([weak, subscriber] {
        subscriber->isActive = false;
        if (const auto list = weak.lock()) std::erase(*list, subscriber);
      });
    });
  }

 private:
  // Outlives its own cancellation while a send still runs its closure.
  struct Subscriber {
    Receive receive;
    bool isActive = true;

    explicit Subscriber(Receive call) : receive(std::move(call)) {}
  };
  using Subscribers = std::vector<std::shared_ptr<Subscriber>>;

  std::shared_ptr<Subscribers> subscribers_ = std::make_shared<Subscribers>();
};

}  // namespace tarnix
