#pragma once

#include <QAccessible>

class QWidget;

namespace tarnix::qt {

// What shows one kind of preview, for assistive tools: its role; its name is that of the widget.
class PreviewPart {
 public:
  explicit PreviewPart(QAccessible::Role role);
  virtual ~PreviewPart() = default;
  QAccessible::Role accessibleRole() const { return role_; }

 private:
  QAccessible::Role role_;
};

}  // namespace tarnix::qt
