#include <QKeyEvent>
#include <QScrollBar>
#include <QWheelEvent>
#include <algorithm>

#include "backends/qt/rows/list_model.h"
#include "backends/qt/rows/row_view.h"

namespace tarnix::qt {
namespace {

constexpr int kPointsOfNotch = 60;  // Points for a notch of the wheel.
constexpr double kAngleOfNotch = 120;

}  // namespace

// Every way of picking a row has made it current before.
void RowView::setSelection(const QRect&, QItemSelectionModel::SelectionFlags command) {
  selectionModel()->select(currentIndex(), command);
}

QRegion RowView::visualRegionForSelection(const QItemSelection& selection) const {
  QRegion region;
  for (const Placed& placed : placedLines()) {
    const auto row = model_.lineAt(placed.line).row;
    if (row && selection.contains(model_.index(*row))) region += placed.rect;
  }
  return region;
}

// A press beside the rows leaves the selection as it is.
QItemSelectionModel::SelectionFlags RowView::selectionCommand(const QModelIndex& index, const QEvent*) const {
  return index.isValid() ? QItemSelectionModel::ClearAndSelect : QItemSelectionModel::NoUpdate;
}

QModelIndex RowView::moveCursor(CursorAction action, Qt::KeyboardModifiers) {
  const int last = model_.rowCount() - 1;
  if (last < 0) return {};
  if (!currentIndex().isValid()) return model_.index(action == MoveEnd ? last : 0);
  const int row = currentIndex().row();
  switch (action) {
    case MoveUp:
    case MovePrevious:
      return model_.index(std::max(row - 1, 0));
    case MoveDown:
    case MoveNext:
      return model_.index(std::min(row + 1, last));
    case MoveHome:
      return model_.index(0);
    case MoveEnd:
      return model_.index(last);
    case MovePageUp:
      return model_.index(pageFrom(row, -1));
    case MovePageDown:
      return model_.index(pageFrom(row, 1));
    default:
      return currentIndex();
  }
}

// The row that lies less than the height of the view away, at least the next one.
int RowView::pageFrom(int row, int direction) const {
  const int end = direction > 0 ? model_.rowCount() - 1 : 0;
  int room = viewport()->height() - heightOf(model_.lineOfRow(row));
  int reached = row;
  while (reached != end) {
    room -= heightOf(model_.lineOfRow(reached + direction));
    if (room < 0 && reached != row) break;
    reached += direction;
  }
  return reached;
}

void RowView::scrollContentsBy(int, int) {
  if (isAdjustingBar_) return;
  const int value = verticalScrollBar()->value();
  setTop(value >= verticalScrollBar()->maximum() ? lastTop() : topAt(value));
}

void RowView::wheelEvent(QWheelEvent* event) {
  const double turned = event->angleDelta().y() / kAngleOfNotch * kPointsOfNotch;
  const double points = event->hasPixelDelta() ? event->pixelDelta().y() : turned;
  wheelRest_ -= points;
  const int whole = static_cast<int>(wheelRest_);
  wheelRest_ -= whole;
  scrollBy(whole);
  event->accept();
}

// Copying the shown part of a title over the clipboard would be no service.
void RowView::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Copy)) {
    event->ignore();
    return;
  }
  QAbstractItemView::keyPressEvent(event);
}

// Dragging over rows picks none of them.
void RowView::mouseMoveEvent(QMouseEvent* event) {
  if (event->buttons() == Qt::NoButton) QAbstractItemView::mouseMoveEvent(event);
}

// The base class would make the first row current, which would pass for a pick.
void RowView::focusInEvent(QFocusEvent* event) {
  QAbstractScrollArea::focusInEvent(event);
  viewport()->update();
}

void RowView::changeEvent(QEvent* event) {
  QAbstractItemView::changeEvent(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::LayoutDirectionChange) layOutAgain();
}

void RowView::showEvent(QShowEvent* event) {
  QAbstractItemView::showEvent(event);
  layOutAgain();
}

}  // namespace tarnix::qt
