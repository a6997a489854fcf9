#pragma once

#include <QColor>
#include <QFont>
#include <QPointF>
#include <QRect>
#include <QTextLayout>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "backends/qt/text/plain_text_pieces.h"

class QPainter;
class QPalette;

namespace tarnix::qt {

// How pieces are laid out. Sizes in device-independent pixels.
struct LayoutStyle {
  QFont font;
  int width = 0;
  QColor labelColor;  // Of what stands for control characters.

  bool operator==(const LayoutStyle&) const = default;
};

// Height of a row of text that needs no other font than that of the style.
int rowHeight(const QFont& font);

// A piece of a text, decoded and broken into rows. Speaks of places as byte offsets into the whole text;
// points and rectangles are relative to its own top left corner.
class PieceLayout {
 public:
  PieceLayout(std::string_view text, const TextPiece& piece, const LayoutStyle& style);

  const TextPiece& piece() const { return piece_; }
  int height() const { return rowTops_.back(); }
  bool isRightToLeft() const;

  // The place between two characters that is nearest to the point.
  std::size_t offsetAt(QPointF point) const;
  // The character under the point, or the nearest one of the row.
  std::size_t characterAt(QPointF point) const;
  // An upright line as high as its row, before the character at `offset`.
  QRect caretAt(std::size_t offset) const;
  TextRange rowAround(std::size_t offset) const;
  TextRange rowAtHeight(int y) const { return rangeOf(rowAt(y)); }
  TextRange wordAround(std::size_t offset) const;

  // The next place for a caret; `offset` itself when there is none left in this piece.
  std::size_t next(std::size_t offset, QTextLayout::CursorMode mode) const;
  std::size_t previous(std::size_t offset, QTextLayout::CursorMode mode) const;

  // Draws the rows that meet `clip`, with `selection` marked in the highlight colours. All in the coordinates
  // of `painter`.
  void draw(QPainter& painter, QPoint origin, const QRect& clip, TextRange selection,
            const QPalette& palette) const;

 private:
  void breakIntoRows(const LayoutStyle& style);
  int indexOf(std::size_t offset) const;
  std::size_t offsetOf(int index) const;
  int rowOf(int index) const;
  TextRange rangeOf(int row) const;
  int rowAt(double y) const;
  bool holdsBreak(TextRange selection) const;
  void addStrips(int row, int from, int to, std::vector<QRectF>& strips) const;
  void addRowStrip(int row, std::vector<QRectF>& strips) const;
  void addBreakStrip(int row, std::vector<QRectF>& strips) const;
  std::vector<QRectF> marks(TextRange selection, int firstRow, int lastRow) const;

  TextPiece piece_;
  QTextLayout layout_;
  std::vector<std::uint32_t>
      offsets_;               // For each UTF-16 unit drawn, its source relative to the piece's begin.
  std::vector<int> rowTops_;  // One more than there are rows.
};

}  // namespace tarnix::qt
