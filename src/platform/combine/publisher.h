#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace tarnix {

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

// A source of values that never fails. Each subscription runs a chain of its own. Values are delivered
// synchronously on the thread that sends them.
template <typename T>
class Publisher {
 public:
  using Receive = std::function<void(const T&)>;
  using Subscribe = std::function<AnyCancellable(Receive)>;

  explicit Publisher(Subscribe subscribe) : subscribe_(std::move(subscribe)) {}

  [[nodiscard]] AnyCancellable sink(Receive receive) const { return subscribe_(std::move(receive)); }

  // Sends `value` during the subscription, before anything of this publisher.
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
  Subscribe subscribe_;
};

// Where values enter. Sends over a snapshot of the subscribers: one that is dropped during a send gets
// nothing more, one that is added waits for the next send, and the subject itself may be destroyed by a
// subscriber.
template <typename T>
class Subject {
 public:
  using Receive = typename Publisher<T>::Receive;

  void send(const T& value) {
    const auto subscribers = subscribers_;  // Keeps the list alive should this subject go.
    const std::vector<std::shared_ptr<Receive>> snapshot = *subscribers;
    for (const auto& receive : snapshot) {
      if (*receive) {
        const Receive call = *receive;
        call(value);
      }
    }
  }

  Publisher<T> publisher() const {
    return Publisher<T>([weak = std::weak_ptr(subscribers_)](Receive receive) {
      const auto subscribers = weak.lock();
      if (!subscribers) return AnyCancellable();
      const auto entry = std::make_shared<Receive>(std::move(receive));
      subscribers->push_back(entry);
      return AnyCancellable([weak, entry] {
        *entry = nullptr;
        if (const auto list = weak.lock()) std::erase(*list, entry);
      });
    });
  }

 private:
  using Subscribers = std::vector<std::shared_ptr<Receive>>;
  std::shared_ptr<Subscribers> subscribers_ = std::make_shared<Subscribers>();
};

}  // namespace tarnix
