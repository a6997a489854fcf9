#pragma once

#include <QPointer>
#include <QWidget>
#include <memory>
#include <vector>

#include "platform/swiftui/element.h"

namespace tarnix::qt {

// A widget that a modifier puts around what it modifies: the content, or the widget of the modifier before.
class Wrapping : public QWidget {
 public:
  // The content stays its owner's.
  virtual void setContent(QWidget* content) = 0;
  // False when the modifier asks for a widget of another kind.
  virtual bool show(const modifiers::Modifier& modifier) = 0;
};

// The widgets around one content, from the inside out, in the order of the modifiers that ask for them. Those
// that stay of the same kinds are kept.
class Wrappings {
 public:
  Wrappings() = default;
  Wrappings(Wrappings&&) noexcept = default;
  Wrappings& operator=(Wrappings&&) = delete;
  ~Wrappings();

  // True when the outermost widget has become another one.
  bool show(const Element& element, QWidget& content);
  // Null when there is none.
  QWidget* outermost() const { return wrappings_.empty() ? nullptr : wrappings_.back().get(); }
  // Before the content goes.
  void clear();

 private:
  bool update(const std::vector<const modifiers::Modifier*>& wanted);

  QPointer<QWidget> content_;
  std::vector<std::unique_ptr<Wrapping>> wrappings_;
};

}  // namespace tarnix::qt
