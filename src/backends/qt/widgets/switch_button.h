#pragma once

#include <QAbstractButton>

class QVariantAnimation;

namespace tarnix::qt {

// A label with a switch at its end. The knob glides for a moment when the user turns the switch; nothing
// ticks otherwise.
class SwitchButton : public QAbstractButton {
 public:
  explicit SwitchButton(QWidget* parent = nullptr);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void glide(bool isOn);
  QRectF track() const;
  void paintTrack(QPainter& painter) const;
  void paintKnob(QPainter& painter) const;

  double position_ = 0;  // Of the knob: 0 is off, 1 is on.
  QVariantAnimation* animation_;
};

}  // namespace tarnix::qt
