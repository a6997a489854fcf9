#include "backends/qt/rows/row_delegate.h"

#include <QPainter>

#include "backends/qt/rows/list_model.h"
#include "backends/qt/rows/row_layout.h"
#include "backends/qt/theme/symbols.h"
#include "backends/qt/theme/theme.h"

namespace tarnix::qt {
namespace {

constexpr double kRowRadius = 8;
constexpr double kSelectedRingWidth = 1.5;
constexpr double kRingInset = 2.25;
constexpr double kPillStrength = 0.07;
constexpr double kSelectedPillStrength = 0.22;

struct RowColors {
  QColor title, symbol, secondary, pill, badge;

  explicit RowColors(const QStyleOptionViewItem& option) {
    const bool isSelected = option.state.testFlag(QStyle::State_Selected);
    const bool isActive = option.state.testFlag(QStyle::State_Active);
    const auto group = isActive ? QPalette::Active : QPalette::Inactive;
    const QColor back =
        option.palette.color(group, isSelected ? QPalette::Highlight : QPalette::AlternateBase);
    title = option.palette.color(group, isSelected ? QPalette::HighlightedText : QPalette::Text);
    symbol = isSelected ? title : option.palette.color(group, QPalette::Link);
    const bool isOnAccent = isSelected && isActive;
    pill = isOnAccent ? blend(Qt::black, back, kSelectedPillStrength) : blend(title, back, kPillStrength);
    badge = isSelected ? title : readable(option.palette.color(group, QPalette::PlaceholderText), pill);
    // The accent leaves no room between its text and one that could still be read.
    secondary = isSelected ? title : option.palette.color(group, QPalette::PlaceholderText);
  }

  // Symbols are in the accent unless told otherwise. On the ground of the selection all is in one colour.
  QColor of(const RowLayout::Part& part) const {
    using Style = modifiers::ForegroundStyle;
    switch (part.style.value_or(part.isText() ? Style::primary : Style::accent)) {
      case Style::accent:
        return symbol;
      case Style::secondary:
        return secondary;
      case Style::primary:
        break;
    }
    return title;
  }
};

void paintGround(QPainter& painter, const QStyleOptionViewItem& option, const QRectF& ground) {
  if (!option.state.testFlag(QStyle::State_Selected)) return;
  const bool isActive = option.state.testFlag(QStyle::State_Active);
  const auto group = isActive ? QPalette::Active : QPalette::Inactive;
  painter.setPen(Qt::NoPen);
  painter.setBrush(option.palette.color(group, QPalette::Highlight));
  painter.drawRoundedRect(ground, kRowRadius, kRowRadius);
  if (!option.state.testFlag(QStyle::State_KeyboardFocusChange)) return;
  painter.setPen(QPen(option.palette.color(group, QPalette::HighlightedText), kSelectedRingWidth));
  const QRectF ring = ground.adjusted(kRingInset, kRingInset, -kRingInset, -kRingInset);
  painter.drawRoundedRect(ring, kRowRadius - kRingInset, kRowRadius - kRingInset);
}

void paintBadge(QPainter& painter, const RowLayout& layout, const RowColors& colors) {
  if (layout.badge().isEmpty()) return;
  const QRectF& pill = layout.pill();
  painter.setPen(Qt::NoPen);
  painter.setBrush(colors.pill);
  painter.drawRoundedRect(pill, pill.height() / 2, pill.height() / 2);
  painter.setPen(colors.badge);
  painter.setFont(layout.pillFont());
  painter.drawText(pill, Qt::AlignCenter, layout.badge());
}

void paintPart(QPainter& painter, const RowLayout& layout, const RowLayout::Part& part, const QColor& color) {
  if (!part.isText()) return paintSymbol(painter, part.room, part.symbol, monochrome(color));
  painter.setPen(color);
  layout.textOf(part).draw(painter, part.room.topLeft(), RowLayout::lineHeight(part.font));
}

const Element& elementAt(const QModelIndex& index) {
  return static_cast<const ListModel&>(*index.model()).element(index.row());
}

}  // namespace

void RowDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                        const QModelIndex& index) const {
  const RowLayout layout(option, elementAt(index));
  const RowColors colors(option);
  painter->save();
  painter->setRenderHint(QPainter::Antialiasing);
  paintGround(*painter, option, layout.ground());
  for (const RowLayout::Part& part : layout.parts()) paintPart(*painter, layout, part, colors.of(part));
  paintBadge(*painter, layout, colors);
  painter->restore();
}

QSize RowDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
  return {option.rect.width(), RowLayout(option, elementAt(index)).height()};
}

}  // namespace tarnix::qt
