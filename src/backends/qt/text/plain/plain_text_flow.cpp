#include "backends/qt/text/plain/plain_text_flow.h"

#include <algorithm>
#include <utility>

namespace tarnix::qt {
namespace {

// A generation holds a screenful of ordinary rows; together they stay at a few megabytes.
constexpr std::size_t kGenerationPieces = 256;
constexpr std::size_t kGenerationBytes = 32 * 1024;

}  // namespace

void TextFlow::setSource(std::shared_ptr<const PieceSource> source) {
  source_ = std::move(source);
  forgetLayouts();
}

void TextFlow::setStyle(const LayoutStyle& style) {
  if (style == style_) return;
  style_ = style;
  forgetLayouts();
}

void TextFlow::setHeights(int visible, int inset) {
  visibleHeight_ = visible;
  inset_ = inset;
  last_.reset();
}

void TextFlow::setRowLimit(std::size_t rows) {
  rowLimit_ = rows > kMostLimitedRows ? 0 : rows;
  end_.reset();
  last_.reset();
}

void TextFlow::forgetLayouts() {
  young_ = {};
  old_ = {};
  end_.reset();
  last_.reset();
}

std::shared_ptr<const PieceLayout> TextFlow::recall(std::size_t begin) const {
  if (const auto found = young_.layouts.find(begin); found != young_.layouts.end()) return found->second;
  const auto found = old_.layouts.find(begin);
  if (found == old_.layouts.end()) return nullptr;
  const auto layout = found->second;
  keep(layout);
  return layout;
}

void TextFlow::keep(std::shared_ptr<const PieceLayout> layout) const {
  const TextPiece& piece = layout->piece();
  young_.bytes += piece.end - piece.begin;
  young_.layouts.emplace(piece.begin, std::move(layout));
  if (young_.bytes < kGenerationBytes && young_.layouts.size() < kGenerationPieces) return;
  old_ = std::exchange(young_, {});
}

std::shared_ptr<const PieceLayout> TextFlow::layoutAt(std::size_t offset) const {
  const TextPiece piece = source_->pieceAt(offset);
  if (auto known = recall(piece.begin)) return known;
  auto layout = source_->layOut(piece, style_);
  laidOutBytes_ += piece.end - piece.begin;
  keep(layout);
  return layout;
}

FlowPosition TextFlow::end() const {
  if (end_) return *end_;
  auto layout = layoutAt(rowLimit_ == 0 ? text().size() : 0);
  std::size_t before = 0;
  while (!isLast(layout->piece()) && before + layout->rowCount() < rowLimit_) {
    before += layout->rowCount();
    layout = layoutAt(layout->piece().next);
  }
  const bool isCut = rowLimit_ > 0 && before + layout->rowCount() > rowLimit_;
  end_ = FlowPosition{layout->piece().begin,
                      isCut ? layout->rowBottom(rowLimit_ - before - 1) : layout->height()};
  return *end_;
}

int TextFlow::shownHeight(const PieceLayout& layout) const {
  return end().piece == layout.piece().begin ? end().y : layout.height();
}

FlowPosition TextFlow::last() const {
  if (!last_) {
    const FlowPosition bottom{end().piece, end().y + inset_ - visibleHeight_};
    last_ = std::max(first(), moved(bottom, 0));
  }
  return *last_;
}

FlowPosition TextFlow::moved(FlowPosition from, int pixels) const {
  from.y += pixels;
  while (from.y < 0 && from.piece > 0) {
    const auto above = layoutAt(from.piece - 1);
    from = {above->piece().begin, from.y + above->height()};
  }
  for (auto layout = layoutAt(from.piece); from.y >= layout->height() && !isLast(layout->piece());) {
    from = {layout->piece().next, from.y - layout->height()};
    layout = layoutAt(from.piece);
  }
  return from;
}

FlowPosition TextFlow::limited(FlowPosition position) const {
  return std::max(first(), std::min(position, last()));
}

FlowPosition TextFlow::rowTop(std::size_t offset) const {
  const auto layout = layoutAt(offset);
  return {layout->piece().begin, layout->caretAt(offset).top()};
}

std::size_t TextFlow::rowOffset(FlowPosition position) const {
  return layoutAt(position.piece)->rowAtHeight(position.y).begin;
}

FlowPosition TextFlow::showing(std::size_t offset, FlowPosition from) const {
  const FlowPosition row = rowTop(offset);
  if (row <= from) return offset < layoutAt(0)->rowAround(0).end ? first() : limited(row);
  const int rowHeight = layoutAt(offset)->caretAt(offset).height();
  const FlowPosition lowest = moved(row, rowHeight - visibleHeight_);
  return limited(std::max(from, lowest));
}

double TextFlow::bytesAbove(FlowPosition position) const {
  const auto layout = layoutAt(position.piece);
  const TextPiece& piece = layout->piece();
  const int inset = insetAbove(piece);
  const double part = static_cast<double>(position.y + inset) / (layout->height() + inset);
  return static_cast<double>(piece.begin) + part * static_cast<double>(piece.next - piece.begin);
}

FlowPosition TextFlow::positionBehind(double bytes) const {
  const auto layout = layoutAt(static_cast<std::size_t>(std::max(bytes, 0.0)));
  const TextPiece& piece = layout->piece();
  const int inset = insetAbove(piece);
  const double part =
      (bytes - static_cast<double>(piece.begin)) / static_cast<double>(piece.next - piece.begin);
  const int y = static_cast<int>(part * (layout->height() + inset)) - inset;
  return limited({piece.begin, y});
}

FlowPosition TextFlow::atPoint(FlowPosition top, QPoint point) const {
  const FlowPosition lowest{end().piece, end().y - 1};
  return rowLimit_ == 0 ? moved(top, point.y()) : std::min(moved(top, point.y()), lowest);
}

std::size_t TextFlow::offsetAt(FlowPosition top, QPoint point) const {
  const FlowPosition position = atPoint(top, point);
  return layoutAt(position.piece)->offsetAt(QPointF(point.x(), position.y));
}

std::size_t TextFlow::characterAt(FlowPosition top, QPoint point) const {
  const FlowPosition position = atPoint(top, point);
  return layoutAt(position.piece)->characterAt(QPointF(point.x(), position.y));
}

QRect TextFlow::caretAt(FlowPosition top, std::size_t offset) const {
  QRect caret;
  forEachVisible(top, [&](const PieceLayout& layout, int y) {
    const TextPiece& piece = layout.piece();
    if (offset >= piece.begin && offset < piece.next) caret = layout.caretAt(offset).translated(0, y);
  });
  return caret;
}

void TextFlow::forEachVisible(FlowPosition top, const Visitor& visit) const {
  int y = -top.y;
  for (auto layout = layoutAt(top.piece); y < visibleHeight_;) {
    visit(*layout, y);
    y += layout->height();
    if (layout->piece().begin == end().piece) return;
    layout = layoutAt(layout->piece().next);
  }
}

}  // namespace tarnix::qt
