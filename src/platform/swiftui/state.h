#pragma once

#include <functional>
#include <memory>
#include <utility>

#include "platform/combine/observable_object.h"
#include "platform/swiftui/element.h"

namespace tarnix {

// How what a view depends on tells the graph that shows it. Outlives the graph harmlessly.
class ViewInvalidation {
 public:
  explicit ViewInvalidation(std::function<void()> invalidate) : invalidate_(std::move(invalidate)) {}
  void operator()() const {
    if (invalidate_) invalidate_();
  }
  void disconnect() { invalidate_ = nullptr; }

 private:
  std::function<void()> invalidate_;
};

// A value that belongs to a place in the view tree and outlives the view values at that place. Copies share
// the value. Writing makes the graph evaluate its views once in the next turn of the run loop.
template <typename T>
class State {
 public:
  State(T initial = T()) : box_(std::make_shared<Box>(std::move(initial))) {}

  const T& get() const { return box_->value; }
  const T& operator*() const { return get(); }
  const T* operator->() const { return &get(); }
  void set(T value) const {
    box_->value = std::move(value);
    invalidate();
  }
  // Changes the value where it lies.
  template <typename Change>
  void update(Change change) const {
    change(box_->value);
    invalidate();
  }
  Binding<T> projectedValue() const {
    return {[state = *this] { return state.get(); },
            [state = *this](T value) { state.set(std::move(value)); }};
  }

  void attach(const std::shared_ptr<ViewInvalidation>& invalidation) const {
    box_->invalidation = invalidation;
  }

 private:
  struct Box {
    explicit Box(T initial) : value(std::move(initial)) {}
    T value;
    std::weak_ptr<ViewInvalidation> invalidation;
  };
  void invalidate() const {
    if (const auto invalidation = box_->invalidation.lock()) (*invalidation)();
  }

  std::shared_ptr<Box> box_;
};

// Passes the changes of one observable object on to one graph.
class ViewObserver {
 public:
  // Goes on as before when it is told the same graph again.
  void observe(const ObservableObject& object, const std::shared_ptr<ViewInvalidation>& invalidation) {
    if (invalidation_.lock() == invalidation) return;
    invalidation_ = invalidation;
    subscription_ = object.objectWillChange().sink([weak = invalidation_](const Void&) {
      if (const auto target = weak.lock()) (*target)();
    });
  }

 private:
  std::weak_ptr<ViewInvalidation> invalidation_;
  AnyCancellable subscription_;
};

// An observable object that belongs to a place in the view tree, made when the graph first asks for it.
template <typename Object>
class StateObject {
 public:
  explicit StateObject(std::function<std::shared_ptr<Object>()> make) : box_(std::make_shared<Box>()) {
    box_->make = std::move(make);
  }

  Object& operator*() const { return *object(); }
  Object* operator->() const { return object().get(); }

  void attach(const std::shared_ptr<ViewInvalidation>& invalidation) const {
    box_->observer.observe(*object(), invalidation);
  }

 private:
  struct Box {
    std::function<std::shared_ptr<Object>()> make;
    std::shared_ptr<Object> object;
    ViewObserver observer;
  };
  const std::shared_ptr<Object>& object() const {
    if (!box_->object) box_->object = box_->make();
    return box_->object;
  }

  std::shared_ptr<Box> box_;
};

}  // namespace tarnix
