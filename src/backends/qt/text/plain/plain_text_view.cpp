#include "backends/qt/text/plain/plain_text_view.h"

#include <QEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QTimerEvent>
#include <algorithm>
#include <utility>

#include "backends/qt/text/plain/plain_text_accessible.h"
#include "backends/qt/theme/focus_ring.h"
#include "backends/qt/widgets/copied_text.h"

namespace tarnix::qt {
namespace {

// The text container's inset of 5 x 10 points, and the air around it.
constexpr int kInsetX = 5 + 9;
constexpr int kInsetY = 10 + 2;
// A narrower view cuts the rows off instead of wrapping them to columns of a few letters.
constexpr int kLeastWidth = 160;
constexpr std::size_t kComparedBytes = 16 * 1024 * 1024;
// Keeps the values of the scroll bar, counted in parts of a byte, within an int.
constexpr double kFinestUnitsPerByte = 1024;
constexpr double kGreatestValue = 1e9;

bool isTakenForEqual(const String& a, const String& b) {
  if (a.sharesBytesWith(b)) return true;
  if (a.size() != b.size()) return false;
  if (a.size() <= 2 * kComparedBytes) return a == b;
  const std::size_t tail = a.size() - kComparedBytes;
  return a.view().substr(0, kComparedBytes) == b.view().substr(0, kComparedBytes) &&
         a.view().substr(tail) == b.view().substr(tail);
}

}  // namespace

PlainTextView::PlainTextView(QWidget* parent) : QAbstractScrollArea(parent) {
  installPlainTextAccessibility();
  setFrameShape(QFrame::NoFrame);
  setFocusPolicy(Qt::StrongFocus);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  viewport()->setCursor(Qt::IBeamCursor);
  connect(verticalScrollBar(), &QAbstractSlider::actionTriggered, this, &PlainTextView::performScroll);
  layOut();
}

void PlainTextView::setText(String text) {
  if (text.sharesBytesWith(flow_.text())) return;
  const bool isOther = !isTakenForEqual(flow_.text(), text);
  setPieces(std::make_shared<PlainPieces>(std::move(text)), isOther);
}

void PlainTextView::setPieces(std::shared_ptr<const PieceSource> pieces, bool isOtherText) {
  indexTimer_.stop();
  index_ = Utf16Index(pieces->text());
  flow_.setSource(std::move(pieces));
  if (isOtherText) {
    selection_ = {};
    topRow_ = 0;
    top_ = flow_.first();
  }
  layOut();
  if (isOtherText) announceText(*this);
}

void PlainTextView::setRowLimit(std::size_t rows) {
  if (std::exchange(rowLimit_, rows) == rows) return;
  flow_.setRowLimit(rows);
  layOut();
}

LayoutStyle PlainTextView::layoutStyle() const {
  return {font(), std::max(kLeastWidth, viewport()->width() - 2 * kInsetX),
          palette().color(QPalette::PlaceholderText)};
}

void PlainTextView::layOut() {
  const bool isAtStart = top_ == flow_.first() || topRow_ == 0;
  const LayoutStyle style = layoutStyle();
  const bool isSameStyle = style == flow_.style();
  flow_.setStyle(style);
  flow_.setHeights(viewport()->height(), kInsetY);
  const FlowPosition kept = isSameStyle ? top_ : isAtStart ? flow_.first() : flow_.rowTop(topRow_);
  top_ = flow_.limited(kept);
  adjustScrollBar();
  viewport()->update();
}

int PlainTextView::barValue(FlowPosition position) const {
  return static_cast<int>(flow_.bytesAbove(position) * unitsPerByte_);
}

// Everything that the bar shows is known without a look at the rest of the text: its unit is a part of a
// byte. A new range may show or hide the bar, which lays out anew inside of this call.
void PlainTextView::adjustScrollBar() {
  const QScopedValueRollback<bool> guard(isAdjustingBar_, true);
  const double total = static_cast<double>(text().size() + 1);
  unitsPerByte_ = std::min(kFinestUnitsPerByte, kGreatestValue / total);
  const int last = barValue(flow_.last());
  verticalScrollBar()->setPageStep(std::max(1, static_cast<int>(total * unitsPerByte_) - last));
  verticalScrollBar()->setRange(0, last);
  verticalScrollBar()->setValue(barValue(top_));
}

void PlainTextView::setTop(FlowPosition top) {
  top_ = flow_.limited(top);
  topRow_ = flow_.rowOffset(top_);
  const QScopedValueRollback<bool> guard(isAdjustingBar_, true);
  verticalScrollBar()->setValue(barValue(top_));
  viewport()->update();
}

void PlainTextView::scrollBy(int pixels) { setTop(flow_.moved(top_, pixels)); }

int PlainTextView::pageHeight() const {
  const int row = rowHeight(font());
  return std::max(row, viewport()->height() - row);
}

// Steps are in rows and pages of pixels; the bar itself knows only bytes.
void PlainTextView::performScroll(int sliderAction) {
  switch (sliderAction) {
    case QAbstractSlider::SliderSingleStepAdd:
      return scrollBy(rowHeight(font()));
    case QAbstractSlider::SliderSingleStepSub:
      return scrollBy(-rowHeight(font()));
    case QAbstractSlider::SliderPageStepAdd:
      return scrollBy(pageHeight());
    case QAbstractSlider::SliderPageStepSub:
      return scrollBy(-pageHeight());
    default:
      return;
  }
}

void PlainTextView::scrollContentsBy(int, int) {
  if (isAdjustingBar_) return;
  const QScrollBar& bar = *verticalScrollBar();
  setTop(bar.value() == bar.maximum() ? flow_.last() : flow_.positionBehind(bar.value() / unitsPerByte_));
}

void PlainTextView::reveal(std::size_t offset) {
  setTop(flow_.showing(std::min(offset, text().size()), top_));
}

TextRange PlainTextView::visibleRange() const {
  const FlowPosition bottom = flow_.moved(top_, viewport()->height() - 1);
  return {flow_.rowOffset(top_), flow_.layoutAt(bottom.piece)->rowAtHeight(bottom.y).end};
}

std::size_t PlainTextView::offsetAt(QPoint viewportPoint) const {
  return flow_.offsetAt(top_, viewportPoint - QPoint(kInsetX, 0));
}

std::size_t PlainTextView::characterAt(QPoint viewportPoint) const {
  return flow_.characterAt(top_, viewportPoint - QPoint(kInsetX, 0));
}

QRect PlainTextView::caretRect(std::size_t offset) const {
  const QRect caret = flow_.caretAt(top_, offset);
  return caret.isNull() ? QRect() : caret.translated(kInsetX, 0);
}

void PlainTextView::select(std::size_t anchor, std::size_t cursor) {
  TextSelection selection(TextRange{std::min(anchor, text().size()), std::min(anchor, text().size())});
  selection.moveCursor(std::min(cursor, text().size()));
  setSelection(selection);
}

void PlainTextView::setSelection(TextSelection selection) {
  selection_ = selection;
  viewport()->update();
  announceSelection(*this);
}

String PlainTextView::selectedText() const {
  const TextRange range = selection();
  const bool isAll = range.begin == 0 && range.end == text().size();
  return isAll ? text() : String(text().view().substr(range.begin, range.end - range.begin));
}

void PlainTextView::copy() {
  if (selection().isEmpty()) return;
  copyToPasteboard(selectedText());
}

const Utf16Index& PlainTextView::positions() {
  if (!index_.isComplete() && !indexTimer_.isActive()) {
    index_.advance();
    if (!index_.isComplete()) indexTimer_.start(0, this);
  }
  return index_;
}

void PlainTextView::timerEvent(QTimerEvent* event) {
  if (event->timerId() == autoscroll_.timerId()) return dragTo(dragPoint_);
  if (event->timerId() != indexTimer_.timerId()) return QAbstractScrollArea::timerEvent(event);
  index_.advance();
  if (index_.isComplete()) indexTimer_.stop();
}

void PlainTextView::changeEvent(QEvent* event) {
  QAbstractScrollArea::changeEvent(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::PaletteChange) layOut();
  if (event->type() == QEvent::ActivationChange) viewport()->update();
}

void PlainTextView::focusInEvent(QFocusEvent* event) {
  QAbstractScrollArea::focusInEvent(event);
  viewport()->update();
}

void PlainTextView::focusOutEvent(QFocusEvent* event) {
  QAbstractScrollArea::focusOutEvent(event);
  viewport()->update();
}

void PlainTextView::resizeEvent(QResizeEvent*) { layOut(); }

void PlainTextView::paintEvent(QPaintEvent* event) {
  QPainter painter(viewport());
  flow_.forEachVisible(top_, [&](const PieceLayout& layout, int y) {
    const QRect area(0, y, viewport()->width(), flow_.shownHeight(layout));
    const QRect clip = area & event->rect();
    if (clip.isEmpty()) return;
    // Stacked marks reach beyond their row, but not into the next line.
    painter.setClipRect(clip);
    layout.draw(painter, QPoint(kInsetX, y), clip, selection(), palette());
  });
  if (!showsFocus(*this)) return;
  painter.setClipping(false);
  paintFocusRingWithin(painter, viewport()->rect());
}

}  // namespace tarnix::qt
