#include "backends/qt/widgets/symbol_button.h"

#include <QEvent>
#include <QPainter>

#include "backends/qt/theme/focus_ring.h"
#include "backends/qt/theme/symbols.h"

namespace tarnix::qt {
namespace {

constexpr int kPadding = 5;
constexpr int kTitleGap = 6;
constexpr double kGroundRadius = 6;
constexpr double kHoverStrength = 0.07;
constexpr double kPressedStrength = 0.14;

}  // namespace

SymbolButton::SymbolButton(QWidget* parent) : QAbstractButton(parent) {
  setFocusPolicy(Qt::TabFocus);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void SymbolButton::setSymbol(const QString& name, int side) {
  if (symbol_ == name && side_ == side) return;
  symbol_ = name;
  side_ = side;
  updateGeometry();
  update();
}

void SymbolButton::setTitle(const QString& title, bool isShown) {
  if (text() == title && isTitleShown_ == isShown) return;
  isTitleShown_ = isShown;
  setText(title);
  setAccessibleName(title);
  updateGeometry();
}

int SymbolButton::titleWidth() const { return isTitleShown_ ? fontMetrics().horizontalAdvance(text()) : 0; }

QSize SymbolButton::sizeHint() const {
  const int gap = side_ > 0 && titleWidth() > 0 ? kTitleGap : 0;
  const int height = qMax(side_, isTitleShown_ ? fontMetrics().height() : 0);
  const int around = 2 * (kPadding + kFocusRingRoom);
  return {side_ + gap + titleWidth() + around, height + around};
}

void SymbolButton::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setLayoutDirection(layoutDirection());
  painter.setRenderHint(QPainter::Antialiasing);
  paintGround(painter);
  const QColor color = palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, foregroundRole());
  const QRect content = rect().adjusted(kPadding + kFocusRingRoom, 0, -kPadding - kFocusRingRoom, 0);
  const int left = isRightToLeft() ? content.right() + 1 - side_ : content.left();
  const QRect symbol(left, (height() - side_) / 2, side_, side_);
  paintDirected(painter, symbol, monochrome(color));
  if (!isTitleShown_) return;
  painter.setPen(color);
  painter.drawText(content, Qt::AlignVCenter | Qt::AlignTrailing, text());
}

// What shows a side of the window shows the other one where that is mirrored.
void SymbolButton::paintDirected(QPainter& painter, const QRect& place, const SymbolTint& tint) const {
  const bool isMirrored = isRightToLeft() && symbol_.endsWith(QStringLiteral(".leading"));
  painter.save();
  if (isMirrored) painter.setTransform(QTransform(-1, 0, 0, 1, 2 * place.left() + place.width(), 0), true);
  paintSymbol(painter, place, symbol_, tint);
  painter.restore();
}

void SymbolButton::paintGround(QPainter& painter) const {
  const QRectF ground =
      QRectF(rect()).adjusted(kFocusRingRoom, kFocusRingRoom, -kFocusRingRoom, -kFocusRingRoom);
  QColor fill = palette().color(QPalette::WindowText);
  fill.setAlphaF(static_cast<float>(isDown() || isChecked() ? kPressedStrength
                                    : underMouse()          ? kHoverStrength
                                                            : 0));
  painter.setPen(Qt::NoPen);
  painter.setBrush(fill);
  painter.drawRoundedRect(ground, kGroundRadius, kGroundRadius);
  if (showsFocus(*this)) paintFocusRing(painter, ground, kGroundRadius);
}

void SymbolButton::enterEvent(QEnterEvent* event) {
  QAbstractButton::enterEvent(event);
  update();
}

void SymbolButton::leaveEvent(QEvent* event) {
  QAbstractButton::leaveEvent(event);
  update();
}

}  // namespace tarnix::qt
