#include "backends/qt/previews/preview_part.h"

#include <QAccessibleWidget>

namespace tarnix::qt {
namespace {

QAccessibleInterface* makePartAccessible(const QString&, QObject* object) {
  const auto* const part = dynamic_cast<PreviewPart*>(object);
  return part == nullptr ? nullptr
                         : new QAccessibleWidget(static_cast<QWidget*>(object), part->accessibleRole());
}

}  // namespace

PreviewPart::PreviewPart(QAccessible::Role role) : role_(role) {
  static const bool isInstalled = [] {
    QAccessible::installFactory(makePartAccessible);
    return true;
  }();
  static_cast<void>(isInstalled);
}

}  // namespace tarnix::qt
