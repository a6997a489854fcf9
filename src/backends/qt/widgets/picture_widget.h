#pragma once

#include <QIcon>
#include <QWidget>

namespace tarnix::qt {

// An icon as large as its room allows, in its own shape. Decoration to assistive tools.
class PictureWidget : public QWidget {
 public:
  explicit PictureWidget(QWidget* parent = nullptr) : QWidget(parent) {}

  void setIcon(const QIcon& icon);
  bool isEmpty() const { return icon_.isNull(); }
  QSize sizeHint() const override { return {16, 16}; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QIcon icon_;
};

}  // namespace tarnix::qt
