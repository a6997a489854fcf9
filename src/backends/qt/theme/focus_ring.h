#pragma once

#include <QRectF>

class QPainter;
class QWidget;

namespace tarnix::qt {

// The room that a control leaves around itself for the ring.
inline constexpr int kFocusRingRoom = 3;

// Whether the widget has the focus in an active window and got it by the keyboard: a ring would only disturb
// whoever points.
bool showsFocus(const QWidget& widget);
// Around `outline`, which has corners of this radius, and within the room above.
void paintFocusRing(QPainter& painter, const QRectF& outline, double radius);
// The same for a whole area, along its inner side.
void paintFocusRingWithin(QPainter& painter, const QRect& area);

}  // namespace tarnix::qt
