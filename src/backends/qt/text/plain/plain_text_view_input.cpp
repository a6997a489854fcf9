#include <QAction>
#include <QApplication>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QStyleHints>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

#include "backends/qt/text/plain/plain_text_view.h"

#include "backends/qt/theme/text.h"

// What mouse, wheel and keys do in a PlainTextView.
namespace tarnix::qt {
namespace {

constexpr int kAutoscrollInterval = 30;  // Milliseconds.
constexpr double kWheelNotch = 120;      // Eighths of a degree (QWheelEvent::angleDelta).

struct MotionKey {
  QKeySequence::StandardKey key;
  Motion motion;
};

constexpr MotionKey kMotionKeys[] = {
    {QKeySequence::SelectNextChar, Motion::right},
    {QKeySequence::SelectPreviousChar, Motion::left},
    {QKeySequence::SelectNextWord, Motion::wordRight},
    {QKeySequence::SelectPreviousWord, Motion::wordLeft},
    {QKeySequence::SelectNextLine, Motion::rowDown},
    {QKeySequence::SelectPreviousLine, Motion::rowUp},
    {QKeySequence::SelectNextPage, Motion::pageDown},
    {QKeySequence::SelectPreviousPage, Motion::pageUp},
    {QKeySequence::SelectStartOfLine, Motion::rowStart},
    {QKeySequence::SelectEndOfLine, Motion::rowEnd},
    {QKeySequence::SelectStartOfDocument, Motion::start},
    {QKeySequence::SelectEndOfDocument, Motion::end},
};

bool matchesAny(const QKeyEvent& event, std::initializer_list<QKeySequence::StandardKey> keys) {
  return std::any_of(keys.begin(), keys.end(), [&](auto key) { return event.matches(key); });
}

}  // namespace

// The window's menus have Copy and Select All as well; the view that has the focus takes them first.
bool PlainTextView::event(QEvent* event) {
  if (event->type() == QEvent::ShortcutOverride) {
    const auto& key = *static_cast<QKeyEvent*>(event);
    if (isSelectable_ && matchesAny(key, {QKeySequence::Copy, QKeySequence::SelectAll})) event->accept();
  }
  return QAbstractScrollArea::event(event);
}

void PlainTextView::wheelEvent(QWheelEvent* event) {
  const double rowsPerStep = QApplication::wheelScrollLines();
  const double turned = event->angleDelta().y() / kWheelNotch * rowsPerStep * rowHeight(font());
  wheelRest_ += event->pixelDelta().isNull() ? -turned : -event->pixelDelta().y();
  const int pixels = static_cast<int>(std::trunc(wheelRest_));
  wheelRest_ -= pixels;
  scrollBy(pixels);
  event->accept();
}

void PlainTextView::setSelectable(bool isSelectable) {
  if (isSelectable_ == isSelectable) return;
  isSelectable_ = isSelectable;
  if (!isSelectable) select(cursor(), cursor());
  viewport()->setCursor(isSelectable ? Qt::IBeamCursor : Qt::ArrowCursor);
}

void PlainTextView::keyPressEvent(QKeyEvent* event) {
  if (!isSelectable_) return event->setAccepted(scrollByKey(*event));
  if (event->matches(QKeySequence::Copy)) return copy();
  if (event->matches(QKeySequence::SelectAll)) return selectAll();
  event->setAccepted(scrollByKey(*event) || selectByKey(*event));
}

bool PlainTextView::scrollByKey(const QKeyEvent& event) {
  if (matchesAny(event, {QKeySequence::MoveToStartOfDocument, QKeySequence::MoveToStartOfLine})) {
    setTop(flow_.first());
  } else if (matchesAny(event, {QKeySequence::MoveToEndOfDocument, QKeySequence::MoveToEndOfLine})) {
    setTop(flow_.last());
  } else if (event.matches(QKeySequence::MoveToNextPage)) {
    scrollBy(pageHeight());
  } else if (event.matches(QKeySequence::MoveToPreviousPage)) {
    scrollBy(-pageHeight());
  } else if (event.matches(QKeySequence::MoveToNextLine)) {
    scrollBy(rowHeight(font()));
  } else if (event.matches(QKeySequence::MoveToPreviousLine)) {
    scrollBy(-rowHeight(font()));
  } else {
    return false;
  }
  return true;
}

bool PlainTextView::selectByKey(const QKeyEvent& event) {
  for (const MotionKey& key : kMotionKeys) {
    if (!event.matches(key.key)) continue;
    moveCursor(key.motion);
    return true;
  }
  return false;
}

void PlainTextView::moveCursor(Motion motion) {
  if (!isVertical(motion)) {
    motionX_.reset();
  } else if (!motionX_) {
    motionX_ = flow_.layoutAt(cursor())->caretAt(cursor()).x();
  }
  TextSelection selection = selection_;
  selection.moveCursor(moved(flow_, cursor(), motion, motionX_.value_or(0), pageHeight()));
  setSelection(selection);
  reveal(cursor());
}

TextRange PlainTextView::unitAt(QPoint point) const {
  const bool isPlace = granularity_ == Granularity::character;
  const std::size_t offset = isPlace ? offsetAt(point) : characterAt(point);
  switch (granularity_) {
    case Granularity::character:
      return {offset, offset};
    case Granularity::word:
      return flow_.layoutAt(offset)->wordAround(offset);
    case Granularity::line:
      return lineAround(text(), offset);
  }
  return {};
}

void PlainTextView::startSelection(QPoint point, Granularity granularity) {
  granularity_ = granularity;
  dragPoint_ = point;
  motionX_.reset();
  setSelection(TextSelection(unitAt(point)));
}

bool PlainTextView::isThirdClick(const QMouseEvent& event) const {
  const auto interval = static_cast<quint64>(QGuiApplication::styleHints()->mouseDoubleClickInterval());
  const int distance = (event.position().toPoint() - doubleClickPoint_).manhattanLength();
  return doubleClickTime_ != 0 && event.timestamp() - doubleClickTime_ < interval &&
         distance < QApplication::startDragDistance();
}

void PlainTextView::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || !isSelectable_) return event->ignore();
  const QPoint point = event->position().toPoint();
  if (isThirdClick(*event)) return startSelection(point, Granularity::line);
  if (!event->modifiers().testFlag(Qt::ShiftModifier)) return startSelection(point, Granularity::character);
  granularity_ = Granularity::character;
  select(selection_.anchor(), offsetAt(point));
}

void PlainTextView::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || !isSelectable_) return event->ignore();
  doubleClickTime_ = event->timestamp();
  doubleClickPoint_ = event->position().toPoint();
  startSelection(doubleClickPoint_, Granularity::word);
}

void PlainTextView::mouseMoveEvent(QMouseEvent* event) {
  if (!event->buttons().testFlag(Qt::LeftButton) || !isSelectable_) return event->ignore();
  dragPoint_ = event->position().toPoint();
  const bool isOutside = dragPoint_.y() < 0 || dragPoint_.y() >= viewport()->height();
  if (!isOutside) autoscroll_.stop();
  if (isOutside && !autoscroll_.isActive()) autoscroll_.start(kAutoscrollInterval, this);
  if (!isOutside) dragTo(dragPoint_);
}

// The farther the pointer is out, the faster the text moves, up to a page for each step.
void PlainTextView::dragTo(QPoint point) {
  const int inside = std::clamp(point.y(), 0, std::max(0, viewport()->height() - 1));
  const int beyond = std::clamp(point.y() - inside, -pageHeight(), pageHeight());
  if (beyond != 0) scrollBy(beyond);
  TextSelection selection = selection_;
  selection.extendTo(unitAt({point.x(), inside}));
  setSelection(selection);
}

void PlainTextView::mouseReleaseEvent(QMouseEvent* event) {
  autoscroll_.stop();
  event->setAccepted(event->button() == Qt::LeftButton);
}

void PlainTextView::contextMenuEvent(QContextMenuEvent* event) {
  if (!isSelectable_) return event->ignore();
  auto* menu = new QMenu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  menu->addAction(localized("Copy"), this, &PlainTextView::copy)->setEnabled(!selection().isEmpty());
  menu->addAction(localized("Select All"), this, &PlainTextView::selectAll)->setEnabled(!text().empty());
  menu->popup(event->globalPos());
}

}  // namespace tarnix::qt
