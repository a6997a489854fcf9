#pragma once

#include <memory>
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

// An element of the resolved tree, which renderers read. The tree keeps alive what its closures touch.
struct Element {
  ElementContent content;
  std::vector<modifiers::Modifier> modifiers;  // From the inside out.
  InheritedModifiers inherited;
  std::vector<Element> children;
  std::vector<Element> attachments;  // Toolbar items and dialogs that hang on this element.
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
