#pragma once

#include <QPointF>
#include <QRect>
#include <QTextLayout>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "backends/qt/text/plain/piece_layout.h"

namespace tarnix::qt {

// A piece of a plain text in one font.
class PlainPieceLayout final : public PieceLayout {
 public:
  PlainPieceLayout(std::string_view text, const TextPiece& piece, const LayoutStyle& style);

  int height() const override { return rowTops_.back(); }
  bool isRightToLeft() const override;
  std::size_t rowCount() const override { return rowTops_.size() - 1; }
  int rowBottom(std::size_t row) const override { return rowTops_[row + 1]; }
  std::size_t offsetAt(QPointF point) const override;
  std::size_t characterAt(QPointF point) const override;
  QRect caretAt(std::size_t offset) const override;
  TextRange rowAround(std::size_t offset) const override;
  TextRange rowAtHeight(int y) const override { return rangeOf(rowAt(y)); }
  TextRange wordAround(std::size_t offset) const override;
  std::size_t next(std::size_t offset, QTextLayout::CursorMode mode) const override;
  std::size_t previous(std::size_t offset, QTextLayout::CursorMode mode) const override;
  void draw(QPainter& painter, QPoint origin, const QRect& clip, TextRange selection,
            const QPalette& palette) const override;

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

  QTextLayout layout_;
  std::vector<std::uint32_t>
      offsets_;               // For each UTF-16 unit drawn, its source relative to the piece's begin.
  std::vector<int> rowTops_;  // One more than there are rows.
};

// A plain text, shared with whoever has it.
class PlainPieces final : public PieceSource {
 public:
  explicit PlainPieces(String text) : text_(std::move(text)) {}
  const String& text() const override { return text_; }
  TextPiece pieceAt(std::size_t offset) const override { return qt::pieceAt(text_, offset); }
  std::shared_ptr<const PieceLayout> layOut(const TextPiece& piece, const LayoutStyle& style) const override {
    return std::make_shared<const PlainPieceLayout>(text_, piece, style);
  }

 private:
  String text_;
};

// True when a run of letters and signs is so long that it has no words to speak of. The search for the
// boundaries of such a word takes time quadratic in its length.
bool hasEndlessWord(const QString& text);
// The word, or what lies between two, around a character: where it begins and ends.
std::pair<int, int> wordIn(const QString& text, int index);

}  // namespace tarnix::qt
