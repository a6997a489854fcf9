#pragma once

#include <QRectF>

class QPainter;
class QWidget;

namespace tarnix::qt {

// Whether the widget has the focus in an active window and got it by the keyboard: a ring would only disturb
// whoever points.
bool showsFocus(const QWidget& widget);
// Around `outline`, which has corners of this radius; takes 3 points of room.
void paintFocusRing(QPainter& painter, const QRectF& outline, double radius);

}  // namespace tarnix::qt
