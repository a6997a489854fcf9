#pragma once

#include <QPainter>
#include <QWidget>

namespace tarnix::qt {

// A line of one pixel in the colour of lines, which parts what stands above it from what stands below, or the
// left from the right.
class Hairline : public QWidget {
 public:
  explicit Hairline(QWidget* parent = nullptr) : QWidget(parent) { setAcross(Qt::Vertical); }

  void setAcross(Qt::Orientation row) {
    const bool isHorizontal = row == Qt::Vertical;
    setFixedSize(isHorizontal ? QWIDGETSIZE_MAX : 1, isHorizontal ? 1 : QWIDGETSIZE_MAX);
    setMinimumSize(1, 1);
    setSizePolicy(isHorizontal ? QSizePolicy::Expanding : QSizePolicy::Fixed,
                  isHorizontal ? QSizePolicy::Fixed : QSizePolicy::Expanding);
  }

 protected:
  void paintEvent(QPaintEvent*) override { QPainter(this).fillRect(rect(), palette().color(QPalette::Mid)); }
};

}  // namespace tarnix::qt
