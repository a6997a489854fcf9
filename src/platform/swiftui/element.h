#pragma once

#include <cstddef>
#include <iterator>
#include <memory>
#include <utility>
#include <variant>
#include <vector>

#include "platform/swiftui/elements.h"

namespace tarnix {

// The modifiers that an element has from those around it, the nearest first. Cheap to copy.
class InheritedModifiers {
 public:
  // The nearest of a kind, or null.
  template <typename T>
  const T* find() const {
    for (const Link* link = nearest_.get(); link != nullptr; link = link->next.get()) {
      if (const T* found = std::get_if<T>(&link->modifier)) return found;
    }
    return nullptr;
  }
  bool hasDisabled() const;
  // These, and nearer than they those that an element hands down, which carries its own from the inside out.
  InheritedModifiers with(const std::vector<modifiers::Modifier>& own) const;

 private:
  struct Link {
    modifiers::Modifier modifier;
    std::shared_ptr<const Link> next;
  };
  std::shared_ptr<const Link> nearest_;
};

// Elements in an order. The trees of two evaluations share what lies between them unchanged, so none is ever
// changed once it is here.
class Elements {
 public:
  class Iterator {
   public:
    using iterator_category = std::input_iterator_tag;
    using difference_type = std::ptrdiff_t;
    using value_type = Element;
    using pointer = const Element*;
    using reference = const Element&;

    Iterator() = default;
    reference operator*() const { return **at_; }
    pointer operator->() const { return at_->get(); }
    Iterator& operator++() {
      ++at_;
      return *this;
    }
    Iterator operator++(int) { return {at_++}; }
    bool operator==(const Iterator&) const = default;

   private:
    friend class Elements;
    using At = std::vector<std::shared_ptr<const Element>>::const_iterator;
    Iterator(At at) : at_(at) {}

    At at_;
  };
  using value_type = Element;
  using const_iterator = Iterator;

  void push_back(std::shared_ptr<const Element> element) { elements_.push_back(std::move(element)); }
  // In place of the one at `position`.
  void replace(std::size_t position, std::shared_ptr<const Element> element) {
    elements_[position] = std::move(element);
  }
  const std::shared_ptr<const Element>& shared(std::size_t position) const { return elements_[position]; }

  bool empty() const { return elements_.empty(); }
  std::size_t size() const { return elements_.size(); }
  const Element& operator[](std::size_t position) const { return *elements_[position]; }
  const Element& at(std::size_t position) const { return *elements_.at(position); }
  const Element& front() const { return *elements_.front(); }
  const Element& back() const { return *elements_.back(); }
  Iterator begin() const { return {elements_.begin()}; }
  Iterator end() const { return {elements_.end()}; }

 private:
  std::vector<std::shared_ptr<const Element>> elements_;
};

// An element of the resolved tree, which renderers read. The tree keeps alive what its closures touch. What
// an evaluation has left alone is the same object in the next tree, so that a renderer may pass over it.
struct Element : std::enable_shared_from_this<Element> {
  Element() = default;

  ElementContent content;
  std::vector<modifiers::Modifier> modifiers;  // From the inside out.
  InheritedModifiers inherited;
  Elements children;
  Elements attachments;  // Toolbar items and dialogs that hang on this element.
  // Differ where the same place shows another thing, whose state must start afresh. None: the place is the
  // identity.
  std::vector<UUID> identities;
  std::shared_ptr<const void> owner;

  template <typename T>
  const T* as() const {
    return std::get_if<T>(&content);
  }
  // Whether it takes no input, for its own sake or that of what it stands in.
  bool isDisabled() const;
  // The modifier of a kind that counts for this element, or null.
  template <typename T>
  const T* modifier() const {
    if constexpr (modifiers::isInherited<T>) return innermost<T>();
    for (auto it = modifiers.rbegin(); it != modifiers.rend(); ++it) {
      if (const T* found = std::get_if<T>(&*it)) return found;
    }
    return nullptr;
  }

 private:
  template <typename T>
  const T* innermost() const {
    for (const auto& each : modifiers) {
      if (const T* found = std::get_if<T>(&each)) return found;
    }
    return inherited.find<T>();
  }
};

}  // namespace tarnix
