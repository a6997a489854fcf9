#pragma once

#include <QWidget>
#include <cstddef>
#include <memory>
#include <vector>

#include "backends/qt/tree/presenter.h"
#include "backends/qt/tree/wrapping.h"

namespace tarnix::qt {

// One place of the tree on the screen. Keeps its presenter while the elements that come are of one kind and
// identity; takes care of what all kinds have in common: what lies around them, names, and dialogs.
class Slot {
 public:
  explicit Slot(Rendering& rendering);
  Slot(Slot&&) noexcept;
  Slot& operator=(Slot&&) = delete;
  ~Slot();

  // True when `widget` has become another one. Passes over the element that it shows already.
  bool show(const Element& element, QWidget* anchor = nullptr);
  // With what lies around it; null for what has no place in the layout.
  QWidget* widget() const;

 private:
  bool fits(const Element& element) const;
  void remake(const Element& element);
  void showNames(const Element& element);
  void showAttachments(const Element& element);

  Rendering& rendering_;
  std::size_t kind_ = 0;
  std::vector<UUID> identities_;
  std::weak_ptr<const Element> shown_;
  Wrappings wrappings_;
  std::unique_ptr<Presenter> presenter_;
  std::vector<Slot> attachments_;
};

// Places in a row, known by their position.
class SlotList {
 public:
  explicit SlotList(Rendering& rendering) : rendering_(rendering) {}

  // True when the widgets are not all the same as before.
  bool show(const std::vector<const Element*>& elements);
  std::vector<QWidget*> widgets() const;

 private:
  Rendering& rendering_;
  std::vector<Slot> slots_;
};

}  // namespace tarnix::qt
