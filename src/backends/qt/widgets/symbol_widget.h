#pragma once

#include <QWidget>

#include "platform/swiftui/element.h"

namespace tarnix::qt {

// A symbol that stands for itself. Decoration to assistive tools unless it is given a name.
class SymbolWidget : public QWidget {
 public:
  explicit SymbolWidget(QWidget* parent = nullptr);

  void setSymbol(const QString& name);
  void setSide(int side);
  void setTone(QPalette::ColorRole role);
  void setRenderingMode(modifiers::SymbolRenderingMode mode);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QString name_;
  modifiers::SymbolRenderingMode mode_ = modifiers::SymbolRenderingMode::monochrome;
};

}  // namespace tarnix::qt
