#include "backends/qt/row_delegate.h"

#include <QPainter>
#include <QTextLayout>

#include "backends/qt/list_model.h"
#include "backends/qt/symbols.h"
#include "backends/qt/theme.h"

namespace tarnix::qt {
namespace {

constexpr int kRowGap = 2;
constexpr int kPadding = 7;
constexpr int kSideInset = 10;
constexpr double kRadius = 8;
constexpr int kSymbolSide = 17;
constexpr int kGap = 9;
constexpr double kRingWidth = 1.5;
constexpr double kRingInset = 2.25;
constexpr int kPillPadding = 7;
constexpr double kPillFontScale = 0.84;
constexpr double kLineHeight = 1.32;  // Of the font's size.
constexpr int kMaximumLines = 2;
constexpr double kPillStrength = 0.07;
constexpr double kSelectedPillStrength = 0.22;

int lineHeight(const QFontMetrics& metrics) {
  return qMax(metrics.height(), qRound(kLineHeight * (metrics.ascent() + metrics.descent()) / 1.17));
}

QFont pillFont(QFont font) {
  const double size = font.pointSizeF();
  if (size > 0) {
    font.setPointSizeF(size * kPillFontScale);
  } else {
    font.setPixelSize(qRound(font.pixelSize() * kPillFontScale));
  }
  return font;
}

// Where the parts of a row lie, mirrored where the desktop reads from the right.
struct RowGeometry {
  QRectF ground;
  QRectF symbol;
  QRectF title;
  QRectF pill;

  RowGeometry(const QStyleOptionViewItem& option, const QString& badge) {
    ground = QRectF(option.rect).adjusted(0, 0, 0, -kRowGap);
    const int line = lineHeight(option.fontMetrics);
    const double top = ground.top() + kPadding;
    symbol = {ground.left() + kSideInset, top + (line - kSymbolSide) / 2.0, kSymbolSide, kSymbolSide};
    const QFontMetricsF pillMetrics(pillFont(option.font));
    const double height = pillMetrics.height() + 2;
    const double width =
        badge.isEmpty() ? 0 : qMax(height + 4, pillMetrics.horizontalAdvance(badge) + 2 * kPillPadding);
    pill = {ground.right() - kSideInset - width, top + (line - height) / 2.0, width, height};
    const double left = symbol.right() + kGap;
    title = {left, top, pill.left() - (badge.isEmpty() ? 0 : kGap) - left, double(line)};
    if (option.direction == Qt::RightToLeft) mirror();
  }

  void mirror() {
    for (QRectF* part : {&symbol, &title, &pill}) {
      part->moveLeft(ground.left() + ground.right() - part->right());
    }
  }
};

// The title broken into at most two lines; the second takes the rest and is cut where it does not fit.
class TitleLines {
 public:
  TitleLines(const QStyleOptionViewItem& option, const QString& title, double width) : width_(width) {
    options_.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    options_.setTextDirection(title.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
    options_.setAlignment(option.direction == Qt::RightToLeft ? Qt::AlignRight : Qt::AlignLeft);
    layOut(first_, title, option.font);
    const auto breakAt = first_.lineAt(0).textLength();
    if (breakAt >= title.size()) return;
    const QString rest = title.mid(breakAt).trimmed();
    options_.setWrapMode(QTextOption::NoWrap);
    layOut(second_, QFontMetricsF(option.font).elidedText(rest, Qt::ElideRight, width), option.font);
  }

  int count() const { return second_.text().isEmpty() ? 1 : kMaximumLines; }

  void draw(QPainter& painter, const QPointF& corner, int height) const {
    const auto drop = [&](const QTextLayout& layout) { return (height - layout.lineAt(0).height()) / 2; };
    first_.draw(&painter, corner + QPointF(0, drop(first_)));
    if (count() > 1) second_.draw(&painter, corner + QPointF(0, height + drop(second_)));
  }

 private:
  void layOut(QTextLayout& layout, const QString& text, const QFont& font) const {
    layout.setText(text);
    layout.setFont(font);
    layout.setTextOption(options_);
    layout.beginLayout();
    QTextLine line = layout.createLine();
    if (line.isValid()) line.setLineWidth(width_);
    layout.endLayout();
  }

  double width_;
  QTextOption options_;
  QTextLayout first_;
  QTextLayout second_;
};

struct RowColors {
  QColor title, placeholder, symbol, pill, badge;

  explicit RowColors(const QStyleOptionViewItem& option) {
    const bool isSelected = option.state.testFlag(QStyle::State_Selected);
    const bool isActive = option.state.testFlag(QStyle::State_Active);
    const auto group = isActive ? QPalette::Active : QPalette::Inactive;
    const QColor back =
        option.palette.color(group, isSelected ? QPalette::Highlight : QPalette::AlternateBase);
    title = option.palette.color(group, isSelected ? QPalette::HighlightedText : QPalette::Text);
    // The accent leaves no room between its text and one that could still be read.
    placeholder = isSelected ? title : option.palette.color(group, QPalette::PlaceholderText);
    symbol = isSelected ? title : option.palette.color(group, QPalette::Link);
    const bool isOnAccent = isSelected && isActive;
    pill = isOnAccent ? blend(Qt::black, back, kSelectedPillStrength) : blend(title, back, kPillStrength);
    badge = isSelected ? title : readable(option.palette.color(group, QPalette::PlaceholderText), pill);
  }
};

void paintGround(QPainter& painter, const QStyleOptionViewItem& option, const QRectF& ground) {
  if (!option.state.testFlag(QStyle::State_Selected)) return;
  const bool isActive = option.state.testFlag(QStyle::State_Active);
  const auto group = isActive ? QPalette::Active : QPalette::Inactive;
  painter.setPen(Qt::NoPen);
  painter.setBrush(option.palette.color(group, QPalette::Highlight));
  painter.drawRoundedRect(ground, kRadius, kRadius);
  if (!option.state.testFlag(QStyle::State_KeyboardFocusChange)) return;
  painter.setPen(QPen(option.palette.color(group, QPalette::HighlightedText), kRingWidth));
  const QRectF ring = ground.adjusted(kRingInset, kRingInset, -kRingInset, -kRingInset);
  painter.drawRoundedRect(ring, kRadius - kRingInset, kRadius - kRingInset);
}

void paintBadge(QPainter& painter, const QStyleOptionViewItem& option, const QRectF& pill,
                const RowColors& colors, const QString& badge) {
  if (badge.isEmpty()) return;
  painter.setPen(Qt::NoPen);
  painter.setBrush(colors.pill);
  painter.drawRoundedRect(pill, pill.height() / 2, pill.height() / 2);
  painter.setPen(colors.badge);
  painter.setFont(pillFont(option.font));
  painter.drawText(pill, Qt::AlignCenter, badge);
}

}  // namespace

void RowDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                        const QModelIndex& index) const {
  const QString badge = index.data(ListModel::badgeRole).toString();
  const RowGeometry geometry(option, badge);
  const RowColors colors(option);
  painter->save();
  painter->setRenderHint(QPainter::Antialiasing);
  paintGround(*painter, option, geometry.ground);
  paintSymbol(*painter, geometry.symbol, index.data(ListModel::symbolRole).toString(),
              monochrome(colors.symbol));
  paintBadge(*painter, option, geometry.pill, colors, badge);
  painter->setPen(index.data(ListModel::isPlaceholderRole).toBool() ? colors.placeholder : colors.title);
  const TitleLines lines(option, index.data().toString(), geometry.title.width());
  lines.draw(*painter, geometry.title.topLeft(), lineHeight(option.fontMetrics));
  painter->restore();
}

QSize RowDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
  const RowGeometry geometry(option, index.data(ListModel::badgeRole).toString());
  const TitleLines lines(option, index.data().toString(), geometry.title.width());
  const int text = lines.count() * lineHeight(option.fontMetrics);
  return {option.rect.width(), text + 2 * kPadding + kRowGap};
}

}  // namespace tarnix::qt
