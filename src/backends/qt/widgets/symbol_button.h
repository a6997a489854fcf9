#pragma once

#include <QAbstractButton>

namespace tarnix::qt {

struct SymbolTint;

// A button without a border: a symbol, a title, or both. It shows a quiet ground only under the pointer,
// while pressed, and around it a ring while it has the keyboard's focus.
class SymbolButton : public QAbstractButton {
 public:
  explicit SymbolButton(QWidget* parent = nullptr);

  void setSymbol(const QString& name, int side);
  // Shown beside the symbol; the name of the button either way.
  void setTitle(const QString& title, bool isShown);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  int titleWidth() const;
  void paintGround(QPainter& painter) const;
  void paintDirected(QPainter& painter, const QRect& place, const SymbolTint& tint) const;

  QString symbol_;
  int side_ = 0;
  bool isTitleShown_ = false;
};

}  // namespace tarnix::qt
