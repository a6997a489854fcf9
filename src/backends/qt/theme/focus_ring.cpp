#include "backends/qt/theme/focus_ring.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPalette>
#include <QWidget>

namespace tarnix::qt {
namespace {

constexpr double kRingWidth = 2;
constexpr double kRingDistance = 1.5;

}  // namespace

// Qt sets this attribute on the window as soon as the keyboard moves the focus in it.
bool showsFocus(const QWidget& widget) {
  return widget.hasFocus() && widget.isActiveWindow() &&
         widget.window()->testAttribute(Qt::WA_KeyboardFocusChange);
}

void paintFocusRing(QPainter& painter, const QRectF& outline, double radius) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(QGuiApplication::palette().color(QPalette::Active, QPalette::Link), kRingWidth));
  painter.setBrush(Qt::NoBrush);
  painter.drawRoundedRect(outline.adjusted(-kRingDistance, -kRingDistance, kRingDistance, kRingDistance),
                          radius + kRingDistance, radius + kRingDistance);
  painter.restore();
}

void paintFocusRingWithin(QPainter& painter, const QRect& area) {
  constexpr double kInset = 4;
  constexpr double kRadius = 5;
  paintFocusRing(painter, QRectF(area).adjusted(kInset, kInset, -kInset, -kInset), kRadius);
}

}  // namespace tarnix::qt
