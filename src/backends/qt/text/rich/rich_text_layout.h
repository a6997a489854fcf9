#pragma once

#include <QTextLine>

#include "backends/qt/text/rich/rich_text_document.h"

namespace tarnix::qt {

// A paragraph, a part of a long one, or some rows of a table, with their look.
class RichPieceLayout final : public PieceLayout {
 public:
  // With free space above and below, in device-independent pixels.
  RichPieceLayout(const TextPiece& piece, std::unique_ptr<RichDocument> content, double above, double below);

  int height() const override { return height_; }
  bool isRightToLeft() const override;
  std::size_t rowCount() const override;
  int rowBottom(std::size_t row) const override;
  std::size_t offsetAt(QPointF point) const override;
  std::size_t characterAt(QPointF point) const override;
  QRect caretAt(std::size_t offset) const override;
  TextRange rowAround(std::size_t offset) const override;
  TextRange rowAtHeight(int y) const override;
  TextRange wordAround(std::size_t offset) const override;
  std::size_t next(std::size_t offset, QTextLayout::CursorMode mode) const override;
  std::size_t previous(std::size_t offset, QTextLayout::CursorMode mode) const override;
  void draw(QPainter& painter, QPoint origin, const QRect& clip, TextRange selection,
            const QPalette& palette) const override;

 private:
  // A line of a block, and where the block stands in this piece.
  struct Row {
    QTextLine line;
    QPointF origin;
    int blockPosition;
  };

  Row rowOf(int position) const;
  Row rowAt(QPointF point) const;
  int positionAt(QPointF point) const;
  TextRange rangeOf(const Row& row) const;
  std::size_t stepped(std::size_t offset, int operation) const;

  std::unique_ptr<RichDocument> content_;
  double above_;
  int height_;
};

}  // namespace tarnix::qt
