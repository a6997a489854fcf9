#include "backends/qt/text/plain/plain_text_motion.h"

#include <algorithm>

namespace tarnix::qt {
namespace {

std::size_t next(const TextFlow& flow, std::size_t offset, QTextLayout::CursorMode mode) {
  const auto layout = flow.layoutAt(offset);
  const std::size_t found = layout->next(offset, mode);
  if (found > offset) return found;
  return std::min(layout->piece().next, flow.text().size());
}

std::size_t previous(const TextFlow& flow, std::size_t offset, QTextLayout::CursorMode mode) {
  const auto layout = flow.layoutAt(offset);
  const std::size_t found = layout->previous(offset, mode);
  if (found < offset || offset == 0) return found;
  // Behind a line break the place before it comes first; behind a cut there is no such place.
  const auto above = flow.layoutAt(layout->piece().begin - 1);
  return above->piece().end < offset ? above->piece().end : above->previous(offset, mode);
}

std::size_t horizontal(const TextFlow& flow, std::size_t offset, bool toRight, QTextLayout::CursorMode mode) {
  const bool isForward = toRight != flow.layoutAt(offset)->isRightToLeft();
  return isForward ? next(flow, offset, mode) : previous(flow, offset, mode);
}

// The end of a row that is wrapped is the start of the next one, therefore the last place in it is the one
// before its last character.
std::size_t lastPlace(const PieceLayout& layout, TextRange row) {
  const TextPiece& piece = layout.piece();
  if (row.end == piece.end && piece.end != piece.next) return row.end;
  return std::max(row.begin, layout.previous(row.end, QTextLayout::SkipCharacters));
}

std::size_t rowEnd(const TextFlow& flow, std::size_t offset) {
  const auto layout = flow.layoutAt(offset);
  return std::max(offset, lastPlace(*layout, layout->rowAround(offset)));
}

// A point in the middle of the neighbouring row, or `distance` pixels away, and the nearest place to it.
std::size_t vertical(const TextFlow& flow, std::size_t offset, int x, int distance) {
  const FlowPosition row = flow.rowTop(offset);
  const int half = flow.layoutAt(offset)->caretAt(offset).height() / 2;
  const FlowPosition goal = flow.moved(row, half + distance);
  if (goal < FlowPosition{}) return 0;
  const auto layout = flow.layoutAt(goal.piece);
  if (goal.y >= layout->height()) return flow.text().size();
  const std::size_t nearest = layout->offsetAt(QPointF(x, goal.y));
  return std::min(nearest, lastPlace(*layout, layout->rowAtHeight(goal.y)));
}

}  // namespace

std::size_t moved(const TextFlow& flow, std::size_t offset, Motion motion, int x, int pageHeight) {
  const int row = flow.layoutAt(offset)->caretAt(offset).height();
  switch (motion) {
    case Motion::left:
      return horizontal(flow, offset, false, QTextLayout::SkipCharacters);
    case Motion::right:
      return horizontal(flow, offset, true, QTextLayout::SkipCharacters);
    case Motion::wordLeft:
      return horizontal(flow, offset, false, QTextLayout::SkipWords);
    case Motion::wordRight:
      return horizontal(flow, offset, true, QTextLayout::SkipWords);
    case Motion::rowStart:
      return flow.layoutAt(offset)->rowAround(offset).begin;
    case Motion::rowEnd:
      return rowEnd(flow, offset);
    case Motion::rowUp:
      return vertical(flow, offset, x, -row);
    case Motion::rowDown:
      return vertical(flow, offset, x, row);
    case Motion::pageUp:
      return vertical(flow, offset, x, -pageHeight);
    case Motion::pageDown:
      return vertical(flow, offset, x, pageHeight);
    case Motion::start:
      return 0;
    case Motion::end:
      return flow.text().size();
  }
  return offset;
}

void TextSelection::extendTo(TextRange reached) {
  const bool isBackward = reached.begin < origin_.begin;
  anchor_ = isBackward ? origin_.end : origin_.begin;
  cursor_ = isBackward ? reached.begin : std::max(reached.end, origin_.end);
}

TextRange TextSelection::range() const { return {std::min(anchor_, cursor_), std::max(anchor_, cursor_)}; }

}  // namespace tarnix::qt
