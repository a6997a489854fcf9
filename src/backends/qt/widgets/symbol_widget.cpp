#include "backends/qt/widgets/symbol_widget.h"

#include <QPainter>

#include "backends/qt/theme/symbols.h"
#include "backends/qt/theme/theme.h"

namespace tarnix::qt {

SymbolWidget::SymbolWidget(QWidget* parent) : QWidget(parent) {
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void SymbolWidget::setSymbol(const QString& name) {
  if (name_ == name) return;
  name_ = name;
  update();
}

void SymbolWidget::setSide(int side) {
  if (width() != side || height() != side) setFixedSize(side, side);
}

void SymbolWidget::setTone(QPalette::ColorRole role) {
  if (foregroundRole() != role) setForegroundRole(role);
}

void SymbolWidget::setRenderingMode(modifiers::SymbolRenderingMode mode) {
  if (mode_ == mode) return;
  mode_ = mode;
  update();
}

void SymbolWidget::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QColor primary = palette().color(foregroundRole());
  const bool isLayered = mode_ != modifiers::SymbolRenderingMode::monochrome;
  const QColor secondary = isLayered ? blend(primary, palette().color(backgroundRole()), 0.5) : primary;
  paintSymbol(painter, rect(), name_, {primary, secondary});
}

}  // namespace tarnix::qt
