#include "backends/qt/theme/style.h"

#include <QPainter>
#include <QStyleOptionSlider>

#include "backends/qt/theme/focus_ring.h"
#include "backends/qt/theme/theme.h"

namespace tarnix::qt {
namespace {

constexpr int kScrollBarExtent = 10;
constexpr int kSmallestThumb = 28;
constexpr double kFrameRadius = 7;
constexpr QSize kButtonRoom(16, 4);

bool has(const QStyleOption& option, QStyle::StateFlag flag) { return option.state.testFlag(flag); }

// Where the thumb can go is the whole bar.
QRect thumbRect(const QStyleOptionSlider& bar) {
  const bool isHorizontal = bar.orientation == Qt::Horizontal;
  const int room = isHorizontal ? bar.rect.width() : bar.rect.height();
  const qint64 range = qint64{bar.maximum} - bar.minimum;
  if (range <= 0) return bar.rect;
  const auto proportional = static_cast<int>(qint64{bar.pageStep} * room / (range + bar.pageStep));
  const int length = qMin(room, qMax(kSmallestThumb, proportional));
  const int start = QStyle::sliderPositionFromValue(bar.minimum, bar.maximum, bar.sliderPosition,
                                                    room - length, bar.upsideDown);
  return isHorizontal ? QRect(bar.rect.left() + start, bar.rect.top(), length, bar.rect.height())
                      : QRect(bar.rect.left(), bar.rect.top() + start, bar.rect.width(), length);
}

void paintScrollBar(QPainter& painter, const QStyleOptionSlider& bar) {
  if (bar.maximum <= bar.minimum) return;
  const bool isActive = has(bar, QStyle::State_MouseOver) || has(bar, QStyle::State_Sunken);
  const double inset = isActive ? 2 : 3;
  const QRectF thumb = QRectF(thumbRect(bar)).adjusted(inset, inset, -inset, -inset);
  QColor color = bar.palette.color(QPalette::WindowText);
  color.setAlphaF(isActive ? 0.45F : 0.25F);
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(color);
  const double radius = qMin(thumb.width(), thumb.height()) / 2;
  painter.drawRoundedRect(thumb, radius, radius);
  painter.restore();
}

void paintRounded(QPainter& painter, const QRect& rect, const QColor& fill, const QPen& line) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(line);
  painter.setBrush(fill);
  painter.drawRoundedRect(QRectF(rect).adjusted(0.75, 0.75, -0.75, -0.75), kFrameRadius, kFrameRadius);
  painter.restore();
}

void paintField(QPainter& painter, const QStyleOption& option) {
  const bool isFocused = has(option, QStyle::State_HasFocus) && has(option, QStyle::State_Active);
  const QColor line = isFocused ? option.palette.color(QPalette::Link) : option.palette.color(QPalette::Mid);
  paintRounded(painter, option.rect, option.palette.color(QPalette::Base), QPen(line, isFocused ? 1.5 : 1));
}

void paintButton(QPainter& painter, const QStyleOption& option) {
  const QColor text = option.palette.color(QPalette::WindowText);
  QColor fill = option.palette.color(QPalette::Button);
  if (has(option, QStyle::State_Sunken) || has(option, QStyle::State_On))
    fill = pressedButton(option.palette);
  else if (has(option, QStyle::State_MouseOver))
    fill = blend(text, fill, 0.05);
  const bool isFocused = has(option, QStyle::State_HasFocus);
  const QColor line = option.palette.color(isFocused ? QPalette::Link : QPalette::Mid);
  paintRounded(painter, option.rect, fill, QPen(line, isFocused ? 1.5 : 1));
}

}  // namespace

Style::Style() : QProxyStyle(QStringLiteral("Fusion")) {}

void Style::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                               const QWidget* widget) const {
  const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(option);
  if (control == CC_ScrollBar && bar != nullptr) return paintScrollBar(*painter, *bar);
  QProxyStyle::drawComplexControl(control, option, painter, widget);
}

void Style::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                          const QWidget* widget) const {
  if (element == PE_PanelLineEdit) return paintField(*painter, *option);
  if (element == PE_PanelButtonCommand) return paintButton(*painter, *option);
  // The panel shows the focus of a button.
  if (element == PE_FrameFocusRect && widget != nullptr && widget->inherits("QPushButton")) return;
  QProxyStyle::drawPrimitive(element, option, painter, widget);
}

int Style::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const {
  switch (metric) {
    case PM_ScrollBarExtent:
      return kScrollBarExtent;
    case PM_ScrollBarSliderMin:
      return kSmallestThumb;
    default:
      return QProxyStyle::pixelMetric(metric, option, widget);
  }
}

QSize Style::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                              const QWidget* widget) const {
  const QSize size = QProxyStyle::sizeFromContents(type, option, contents, widget);
  return type == CT_PushButton ? size + kButtonRoom : size;
}

int Style::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                     QStyleHintReturn* returnData) const {
  if (hint == SH_ScrollBar_Transient) return 0;
  if (hint == SH_DialogButtonBox_ButtonsHaveIcons) return 0;
  return QProxyStyle::styleHint(hint, option, widget, returnData);
}

QRect Style::subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                            const QWidget* widget) const {
  const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(option);
  if (control != CC_ScrollBar || bar == nullptr) {
    return QProxyStyle::subControlRect(control, option, part, widget);
  }
  const QRect thumb = thumbRect(*bar);
  const bool isHorizontal = bar->orientation == Qt::Horizontal;
  QRect rect = bar->rect;
  switch (part) {
    case SC_ScrollBarGroove:
      return rect;
    case SC_ScrollBarSlider:
      return thumb;
    case SC_ScrollBarSubPage:
      if (isHorizontal) {
        rect.setRight(thumb.left() - 1);
      } else {
        rect.setBottom(thumb.top() - 1);
      }
      return rect;
    case SC_ScrollBarAddPage:
      if (isHorizontal) {
        rect.setLeft(thumb.right() + 1);
      } else {
        rect.setTop(thumb.bottom() + 1);
      }
      return rect;
    default:
      return {};
  }
}

}  // namespace tarnix::qt
