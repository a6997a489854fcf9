#include "backends/qt/widgets/switch_button.h"

#include <QEvent>
#include <QPainter>
#include <QStyle>
#include <QVariantAnimation>

#include "backends/qt/theme/focus_ring.h"
#include "backends/qt/theme/theme.h"

namespace tarnix::qt {
namespace {

constexpr QSizeF kTrackSize(34, 20);
constexpr double kKnobInset = 2;
constexpr int kTrackGap = 8;
constexpr int kGlideMilliseconds = 120;

}  // namespace

SwitchButton::SwitchButton(QWidget* parent)
    : QAbstractButton(parent), animation_(new QVariantAnimation(this)) {
  setCheckable(true);
  setFocusPolicy(Qt::StrongFocus);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  animation_->setDuration(kGlideMilliseconds);
  connect(animation_, &QVariantAnimation::valueChanged, this, [this](const QVariant& value) {
    position_ = value.toDouble();
    update();
  });
  connect(this, &QAbstractButton::toggled, this, [this](bool isOn) { glide(isOn); });
}

QSize SwitchButton::sizeHint() const {
  const int text = this->text().isEmpty() ? 0 : fontMetrics().horizontalAdvance(this->text()) + kTrackGap;
  const int height = qMax(fontMetrics().height(), qRound(kTrackSize.height()));
  return {text + qRound(kTrackSize.width()) + 2 * kFocusRingRoom, height + 2 * kFocusRingRoom};
}

void SwitchButton::glide(bool isOn) {
  animation_->stop();
  const double end = isOn ? 1 : 0;
  const bool isGliding = isVisible() && style()->styleHint(QStyle::SH_Widget_Animation_Duration) > 0;
  if (!isGliding) {
    position_ = end;
    return;
  }
  animation_->setStartValue(position_);
  animation_->setEndValue(end);
  animation_->start();
}

QRectF SwitchButton::track() const {
  const QRectF room =
      QRectF(rect()).adjusted(kFocusRingRoom, kFocusRingRoom, -kFocusRingRoom, -kFocusRingRoom);
  const double left = isRightToLeft() ? room.left() : room.right() - kTrackSize.width();
  return {QPointF(left, room.center().y() - kTrackSize.height() / 2), kTrackSize};
}

void SwitchButton::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setLayoutDirection(layoutDirection());
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(palette().color(QPalette::WindowText));
  painter.drawText(rect().adjusted(kFocusRingRoom, 0, -kFocusRingRoom, 0),
                   Qt::AlignVCenter | Qt::AlignLeading, text());
  paintTrack(painter);
  paintKnob(painter);
  if (showsFocus(*this)) paintFocusRing(painter, track(), kTrackSize.height() / 2);
}

void SwitchButton::paintTrack(QPainter& painter) const {
  const QColor background = palette().color(backgroundRole());
  const QColor on = readable(palette().color(QPalette::Active, QPalette::Highlight), background, 3);
  const QColor off = readable(palette().color(QPalette::Mid), background, 3);
  QColor fill = blend(on, off, position_);
  if (underMouse()) fill = blend(palette().color(QPalette::WindowText), fill, 0.08);
  painter.setPen(Qt::NoPen);
  painter.setBrush(isEnabled() ? fill : blend(fill, background, 0.4));
  painter.drawRoundedRect(track(), kTrackSize.height() / 2, kTrackSize.height() / 2);
}

void SwitchButton::paintKnob(QPainter& painter) const {
  const QRectF track = this->track();
  const double side = kTrackSize.height() - 2 * kKnobInset;
  const double travel = kTrackSize.width() - 2 * kKnobInset - side;
  const double shown = isRightToLeft() ? 1 - position_ : position_;
  painter.setBrush(Qt::white);
  painter.drawEllipse(
      QRectF(track.left() + kKnobInset + travel * shown, track.top() + kKnobInset, side, side));
}

void SwitchButton::enterEvent(QEnterEvent* event) {
  QAbstractButton::enterEvent(event);
  update();
}

void SwitchButton::leaveEvent(QEvent* event) {
  QAbstractButton::leaveEvent(event);
  update();
}

void SwitchButton::changeEvent(QEvent* event) {
  QAbstractButton::changeEvent(event);
  if (event->type() == QEvent::FontChange) updateGeometry();
}

}  // namespace tarnix::qt
