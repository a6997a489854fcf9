#pragma once

#include <QPoint>
#include <QRect>
#include <compare>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <unordered_map>

#include "backends/qt/text/plain/plain_text_layout.h"
#include "platform/foundation/string.h"

namespace tarnix::qt {

// A height in the text: `y` pixels below the top of the piece that begins at byte `piece`. Negative in the
// inset above the first piece.
struct FlowPosition {
  std::size_t piece = 0;
  int y = 0;

  auto operator<=>(const FlowPosition&) const = default;
};

// A text as one column of rows, of which only those near the asked-for place ever exist: nothing here costs
// more for a larger text. Places are byte offsets; points are relative to the top left corner of the visible
// part, whose upper edge is a FlowPosition.
class TextFlow {
 public:
  void setSource(std::shared_ptr<const PieceSource> source);
  void setStyle(const LayoutStyle& style);
  // Height of the visible part, and the empty space above the first and below the last row.
  void setHeights(int visible, int inset);

  // Shows no more rows than these; 0, and more than `kMostLimitedRows`, is no limit.
  void setRowLimit(std::size_t rows);
  static constexpr std::size_t kMostLimitedRows = 1000;

  const String& text() const { return source_->text(); }
  const LayoutStyle& style() const { return style_; }

  FlowPosition first() const { return {0, -inset_}; }
  // The last row is at the lower edge; the same as `first` when everything fits.
  FlowPosition last() const;
  // Below the last row that is shown.
  FlowPosition end() const;
  int shownHeight(const PieceLayout& layout) const;
  // Walks over everything in between: meant for a few pages.
  FlowPosition moved(FlowPosition from, int pixels) const;
  FlowPosition limited(FlowPosition position) const;
  // The row that holds `offset` is at the upper edge.
  FlowPosition rowTop(std::size_t offset) const;
  std::size_t rowOffset(FlowPosition position) const;
  // The nearest position to `from` that shows the whole row of `offset`.
  FlowPosition showing(std::size_t offset, FlowPosition from) const;

  // Part of the text that lies above, in bytes; even within a piece, so that a scroll bar moves smoothly.
  double bytesAbove(FlowPosition position) const;
  FlowPosition positionBehind(double bytes) const;

  std::size_t offsetAt(FlowPosition top, QPoint point) const;
  std::size_t characterAt(FlowPosition top, QPoint point) const;
  // Empty when the row is not in the visible part.
  QRect caretAt(FlowPosition top, std::size_t offset) const;

  using Visitor = std::function<void(const PieceLayout& layout, int y)>;
  void forEachVisible(FlowPosition top, const Visitor& visit) const;

  // The layout of the piece that holds `offset`.
  std::shared_ptr<const PieceLayout> layoutAt(std::size_t offset) const;
  // Bytes of text that were decoded and laid out since the start, to see what a turn costs.
  std::size_t laidOutBytes() const { return laidOutBytes_; }

 private:
  // Two generations: what was not used while the younger one filled up goes away.
  struct Generation {
    std::unordered_map<std::size_t, std::shared_ptr<const PieceLayout>> layouts;
    std::size_t bytes = 0;
  };

  bool isLast(const TextPiece& piece) const { return piece.next > text().size(); }
  int insetAbove(const TextPiece& piece) const { return piece.begin == 0 ? inset_ : 0; }
  FlowPosition atPoint(FlowPosition top, QPoint point) const;
  std::shared_ptr<const PieceLayout> recall(std::size_t begin) const;
  void keep(std::shared_ptr<const PieceLayout> layout) const;
  void forgetLayouts();

  std::shared_ptr<const PieceSource> source_ = std::make_shared<PlainPieces>(String());
  LayoutStyle style_;
  int visibleHeight_ = 0;
  int inset_ = 0;
  std::size_t rowLimit_ = 0;
  mutable Generation young_;
  mutable Generation old_;
  mutable std::size_t laidOutBytes_ = 0;
  mutable std::optional<FlowPosition> end_;
  mutable std::optional<FlowPosition> last_;
};

}  // namespace tarnix::qt
