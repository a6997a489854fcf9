#include "backends/qt/rows/row_view.h"

#include <QPaintEvent>
#include <QPainter>
#include <QScrollBar>
#include <algorithm>
#include <utility>

#include "backends/qt/rows/list_model.h"
#include "backends/qt/rows/row_delegate.h"
#include "backends/qt/rows/row_view_accessible.h"
#include "backends/qt/theme/focus_ring.h"
#include "backends/qt/theme/fonts.h"

namespace tarnix::qt {
namespace {

constexpr int kUnitsPerLine = 128;  // Of the scroll bar.
constexpr std::size_t kKeptHeights = 1024;
constexpr int kBottomMargin = 6;
constexpr int kLeadingMargin = 8;
constexpr int kTrailingMargin = 10;  // The scroll bar, where there is one, lies in it.
constexpr int kHeaderInset = 20;
constexpr int kHeaderAbove = 6;
constexpr int kHeaderBelow = 6;
constexpr int kNoticeAbove = 24;
constexpr modifiers::Font kHeaderFont{.size = 11};

QFont headerFont() {
  QFont font = fontFor(&kHeaderFont);
  font.setWeight(QFont::DemiBold);
  return font;
}

}  // namespace

RowView::RowView(ListModel& model, QWidget* parent) : QAbstractItemView(parent), model_(model) {
  installRowViewAccessibility();
  setModel(&model);
  setItemDelegate(new RowDelegate(this));
  setSelectionMode(SingleSelection);
  setEditTriggers(NoEditTriggers);
  setFrameShape(NoFrame);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
  viewport()->setAutoFillBackground(false);
}

void RowView::setStyle(modifiers::ListStyle style) {
  isOnSidebar_ = style == modifiers::ListStyle::sidebar;
  viewport()->setAutoFillBackground(!isOnSidebar_);
}

void RowView::refresh() {
  layOutAgain();
  announceRowNames(*this);
}

void RowView::setNotice(const QString& notice) {
  if (notice_ == notice) return;
  notice_ = notice;
  setAccessibleDescription(notice);
  viewport()->update();
}

void RowView::selectRow(std::optional<int> row, bool scrolls) {
  if (!row) {
    selectionModel()->clear();
    return;
  }
  const QModelIndex index = model_.index(*row);
  const bool isSelected = selectionModel()->isSelected(index);
  if (!isSelected) {
    setAutoScroll(false);
    selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
    setAutoScroll(true);
  }
  if (!scrolls) return;
  isRevealing_ = true;
  if (isVisible()) scrollTo(index);
}

std::vector<int> RowView::visibleRows() const {
  std::vector<int> rows;
  for (const Placed& placed : placedLines()) {
    if (const auto row = model_.lineAt(placed.line).row) rows.push_back(*row);
  }
  return rows;
}

int RowView::heightOf(int line) const {
  const auto known = heights_.find(line);
  if (known != heights_.end()) return known->second;
  if (heights_.size() >= kKeptHeights) heights_.clear();
  const auto row = model_.lineAt(line).row;
  const int height =
      row ? itemDelegate()->sizeHint(optionFor(viewport()->rect()), model_.index(*row)).height()
          : QFontMetrics(headerFont()).height() + kHeaderAbove + kHeaderBelow;
  return heights_.emplace(line, height).first->second;
}

std::vector<RowView::Placed> RowView::placedLines() const {
  std::vector<Placed> placed;
  int y = -top_.hidden;
  for (int line = top_.line; line < model_.lineCount() && y < viewport()->height(); ++line) {
    placed.push_back({line, QRect(0, y, viewport()->width(), heightOf(line))});
    y += heightOf(line);
  }
  return placed;
}

QRect RowView::visualRect(const QModelIndex& index) const {
  if (!index.isValid()) return {};
  const int line = model_.lineOfRow(index.row());
  for (const Placed& placed : placedLines()) {
    if (placed.line == line) return placed.rect;
  }
  // Out of sight: only the direction counts, and no row is measured for it.
  const int height = 2 * fontMetrics().height();
  const int y = line < top_.line ? -height - 1 : viewport()->height() + 1;
  return {0, y, viewport()->width(), height};
}

QModelIndex RowView::indexAt(const QPoint& point) const {
  for (const Placed& placed : placedLines()) {
    const auto row = model_.lineAt(placed.line).row;
    if (row && placed.rect.contains(point)) return model_.index(*row);
  }
  return {};
}

void RowView::scrollTo(const QModelIndex& index, ScrollHint) {
  if (!index.isValid()) return;
  const int line = model_.lineOfRow(index.row());
  // The header of a section comes into sight with its first row.
  const bool isBelowHeader = line > 0 && !model_.lineAt(line - 1).row;
  const Top highest = topForBottom(line, kBottomMargin);
  const Top lowest{isBelowHeader ? line - 1 : line, 0};
  setTop(std::min(std::max(top_, highest), lowest));
}

RowView::Top RowView::topForBottom(int line, int below) const {
  int missing = viewport()->height() - below;
  for (; line >= 0; --line) {
    missing -= heightOf(line);
    if (missing <= 0) return {line, -missing};
  }
  return {};
}

RowView::Top RowView::lastTop() const { return topForBottom(model_.lineCount() - 1, kBottomMargin); }

void RowView::setTop(Top top) {
  top = std::clamp(top, Top{}, lastTop());
  if (top == top_) return;
  top_ = top;
  adjustScrollBar();
  viewport()->update();
}

void RowView::scrollBy(int points) {
  Top top{top_.line, top_.hidden + points};
  while (top.hidden < 0 && top.line > 0) top.hidden += heightOf(--top.line);
  while (top.line < model_.lineCount() && top.hidden >= heightOf(top.line)) {
    top.hidden -= heightOf(top.line++);
  }
  setTop({top.line, std::max(top.hidden, 0)});
}

int RowView::barValue(Top top) const {
  if (top.line >= model_.lineCount()) return 0;
  return top.line * kUnitsPerLine + top.hidden * kUnitsPerLine / heightOf(top.line);
}

RowView::Top RowView::topAt(int barValue) const {
  const int line = std::clamp(barValue / kUnitsPerLine, 0, std::max(model_.lineCount() - 1, 0));
  if (model_.lineCount() == 0) return {};
  return {line, barValue % kUnitsPerLine * heightOf(line) / kUnitsPerLine};
}

void RowView::adjustScrollBar() {
  const bool wasAdjusting = std::exchange(isAdjustingBar_, true);
  const int end = barValue(lastTop());
  verticalScrollBar()->setRange(0, end);
  verticalScrollBar()->setPageStep(std::max(1, model_.lineCount() * kUnitsPerLine - end));
  verticalScrollBar()->setSingleStep(kUnitsPerLine);
  verticalScrollBar()->setValue(barValue(top_));
  isAdjustingBar_ = wasAdjusting;
}

// A hidden view may have any size; it is laid out when it is shown.
void RowView::layOutAgain() {
  heights_.clear();
  if (!isVisible()) return;
  top_ = std::clamp(top_, Top{}, lastTop());
  if (isRevealing_) scrollTo(currentIndex());
  adjustScrollBar();
  viewport()->update();
}

void RowView::updateGeometries() {
  QAbstractItemView::updateGeometries();
  layOutAgain();
}

void RowView::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  QAbstractItemView::currentChanged(current, previous);
  if (hasFocus()) announceFocus(*this, current);
}

void RowView::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) {
  QAbstractItemView::selectionChanged(selected, deselected);
  announceSelection(*this, selected, deselected);
}

QStyleOptionViewItem RowView::optionFor(const QRect& rect) const {
  QStyleOptionViewItem option;
  initViewItemOption(&option);
  const int trailing = std::max(0, kTrailingMargin - (width() - viewport()->width()));
  if (!isOnSidebar_) option.palette.setBrush(QPalette::AlternateBase, option.palette.base());
  option.rect = isRightToLeft() ? rect.adjusted(trailing, 0, -kLeadingMargin, 0)
                                : rect.adjusted(kLeadingMargin, 0, -trailing, 0);
  return option;
}

void RowView::paintEvent(QPaintEvent* event) {
  isRevealing_ = false;
  QPainter painter(viewport());
  painter.setLayoutDirection(layoutDirection());
  for (const Placed& placed : placedLines()) {
    if (!placed.rect.intersects(event->rect())) continue;
    const ListModel::Line line = model_.lineAt(placed.line);
    if (line.row) {
      paintRow(painter, placed.rect, *line.row);
    } else {
      paintHeader(painter, placed.rect, line.header);
    }
  }
  paintNotice(painter);
  // Where no row is there to show the focus.
  if (!showsFocus(*this) || selectionModel()->hasSelection()) return;
  paintFocusRingWithin(painter, viewport()->rect());
}

void RowView::paintNotice(QPainter& painter) const {
  painter.setFont(font());
  painter.setPen(palette().color(QPalette::PlaceholderText));
  const int top = QFontMetrics(headerFont()).height() + kHeaderAbove + kHeaderBelow;
  const QRect room = viewport()->rect().adjusted(kHeaderInset, top, -kHeaderInset, 0);
  painter.drawText(room.adjusted(0, kNoticeAbove, 0, 0), Qt::AlignTop | Qt::AlignHCenter | Qt::TextWordWrap,
                   notice_);
}

void RowView::paintHeader(QPainter& painter, const QRect& rect, const QString& header) const {
  painter.setFont(headerFont());
  painter.setPen(palette().color(QPalette::PlaceholderText));
  const QRect room = rect.adjusted(kHeaderInset, kHeaderAbove, -kHeaderInset, -kHeaderBelow);
  const QString text = painter.fontMetrics().elidedText(header, Qt::ElideRight, room.width());
  painter.drawText(room, Qt::AlignVCenter | Qt::AlignLeading, text);
}

void RowView::paintRow(QPainter& painter, const QRect& rect, int row) const {
  const QModelIndex index = model_.index(row);
  QStyleOptionViewItem option = optionFor(rect);
  option.state.setFlag(QStyle::State_Selected, selectionModel()->isSelected(index));
  option.state.setFlag(QStyle::State_Active, isActiveWindow());
  option.state.setFlag(QStyle::State_KeyboardFocusChange, showsFocus(*this));
  itemDelegate()->paint(&painter, option, index);
}

}  // namespace tarnix::qt
