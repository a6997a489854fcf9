#pragma once

#include <algorithm>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "platform/combine/observable_object.h"
#include "platform/swiftui/binding.h"

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

// The graphs that show one value, which views in several of them may share.
class ViewInvalidations {
 public:
  // True when this graph was not told of before.
  bool add(const std::shared_ptr<ViewInvalidation>& graph) {
    std::erase_if(graphs_, [](const auto& each) { return each.expired(); });
    const auto isThis = [&](const auto& each) { return each.lock() == graph; };
    if (std::any_of(graphs_.begin(), graphs_.end(), isThis)) return false;
    graphs_.push_back(graph);
    return true;
  }
  void operator()() const {
    const auto told = graphs_;
    for (const auto& each : told) {
      if (const auto graph = each.lock()) (*graph)();
    }
  }

 private:
  std::vector<std::weak_ptr<ViewInvalidation>> graphs_;
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

  void attach(const std::shared_ptr<ViewInvalidation>& graph) const { box_->graphs.add(graph); }

 private:
  struct Box {
    explicit Box(T initial) : value(std::move(initial)) {}
    T value;
    ViewInvalidations graphs;
  };
  void invalidate() const { box_->graphs(); }

  std::shared_ptr<Box> box_;
};

// Passes the changes of one observable object on to the graphs that show it.
class ViewObserver {
 public:
  void observe(const ObservableObject& object, const std::shared_ptr<ViewInvalidation>& graph) {
    graphs_->add(graph);
    if (std::exchange(isObserving_, true)) return;
    subscription_ = object.objectWillChange().sink([graphs = graphs_](const Void&) { (*graphs)(); });
  }

 private:
  std::shared_ptr<ViewInvalidations> graphs_ = std::make_shared<ViewInvalidations>();
  bool isObserving_ = false;
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
