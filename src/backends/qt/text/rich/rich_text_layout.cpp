#include "backends/qt/text/rich/rich_text_layout.h"

#include <QAbstractTextDocumentLayout>
#include <QPainter>
#include <QPalette>
#include <QTextBlock>
#include <algorithm>
#include <cmath>
#include <utility>

#include "backends/qt/text/plain/plain_text_layout.h"
#include "backends/qt/text/rich/rich_text_lines.h"

namespace tarnix::qt {

RichPieceLayout::RichPieceLayout(const TextPiece& piece, std::unique_ptr<RichDocument> content, double above,
                                 double below)
    : PieceLayout(piece), content_(std::move(content)), above_(std::round(above)) {
  const double height = content_->document().documentLayout()->documentSize().height();
  height_ = std::max(1, static_cast<int>(std::ceil(above_ + height + below)));
}

bool RichPieceLayout::isRightToLeft() const {
  return content_->document().firstBlock().textDirection() == Qt::RightToLeft;
}

std::size_t RichPieceLayout::rowCount() const {
  std::size_t count = 0;
  for (QTextBlock block = content_->document().begin(); block.isValid(); block = block.next())
    count += static_cast<std::size_t>(block.layout()->lineCount());
  return count;
}

int RichPieceLayout::rowBottom(std::size_t row) const {
  std::size_t before = 0;
  for (QTextBlock block = content_->document().begin(); block.isValid(); block = block.next()) {
    const auto count = static_cast<std::size_t>(block.layout()->lineCount());
    if (row >= before + count) {
      before += count;
      continue;
    }
    const QTextLine line = block.layout()->lineAt(static_cast<int>(row - before));
    const Row found = rowOf(block.position() + line.textStart());
    return qCeil(found.origin.y() + line.y() + line.height());
  }
  return height_;
}

RichPieceLayout::Row RichPieceLayout::rowOf(int position) const {
  const QTextBlock block = content_->document().findBlock(position);
  const QPointF origin = content_->document().documentLayout()->blockBoundingRect(block).topLeft();
  const QTextLine line = block.layout()->lineForTextPosition(position - block.position());
  return {line, origin + QPointF(0, above_), block.position()};
}

int RichPieceLayout::positionAt(QPointF point) const {
  const auto& layout = *content_->document().documentLayout();
  return std::max(layout.hitTest(point - QPointF(0, above_), Qt::FuzzyHit), 0);
}

RichPieceLayout::Row RichPieceLayout::rowAt(QPointF point) const {
  Row row = rowOf(positionAt(point));
  const QTextBlock block = content_->document().findBlock(row.blockPosition);
  // The end of a row that is wrapped is the start of the next one.
  for (int i = 0; i < block.layout()->lineCount(); ++i) {
    const QTextLine line = block.layout()->lineAt(i);
    row.line = line;
    if (point.y() < row.origin.y() + line.y() + line.height()) break;
  }
  return row;
}

TextRange RichPieceLayout::rangeOf(const Row& row) const {
  if (!row.line.isValid()) return {piece().begin, piece().end};
  const int begin = row.blockPosition + row.line.textStart();
  return {content_->offsetOf(begin), content_->offsetOf(begin + row.line.textLength())};
}

std::size_t RichPieceLayout::offsetAt(QPointF point) const { return content_->offsetOf(positionAt(point)); }

std::size_t RichPieceLayout::characterAt(QPointF point) const {
  const Row row = rowAt(point);
  if (!row.line.isValid()) return piece().begin;
  const double x = point.x() - row.origin.x();
  return content_->offsetOf(row.blockPosition + row.line.xToCursor(x, QTextLine::CursorOnCharacter));
}

QRect RichPieceLayout::caretAt(std::size_t offset) const {
  const int position = content_->positionOf(offset);
  const Row row = rowOf(position);
  if (!row.line.isValid()) return {0, 0, 1, height_};
  const double x = row.line.cursorToX(position - row.blockPosition);
  const QPointF top = row.origin + QPointF(x, row.line.y());
  return {static_cast<int>(top.x()), static_cast<int>(top.y()), 1, qCeil(row.line.height())};
}

TextRange RichPieceLayout::rowAround(std::size_t offset) const {
  return rangeOf(rowOf(content_->positionOf(offset)));
}

TextRange RichPieceLayout::rowAtHeight(int y) const {
  const bool isFromTheRight = isRightToLeft();
  return rangeOf(rowAt(QPointF(isFromTheRight ? content_->document().textWidth() : 0, y)));
}

TextRange RichPieceLayout::wordAround(std::size_t offset) const {
  const int position = content_->positionOf(offset);
  const QTextBlock block = content_->document().findBlock(position);
  const auto [begin, end] = wordIn(block.text(), position - block.position());
  return {content_->offsetOf(block.position() + begin), content_->offsetOf(block.position() + end)};
}

std::size_t RichPieceLayout::stepped(std::size_t offset, int operation) const {
  QTextCursor cursor(&content_->document());
  cursor.setPosition(content_->positionOf(offset));
  while (cursor.movePosition(static_cast<QTextCursor::MoveOperation>(operation))) {
    const std::size_t reached = content_->offsetOf(cursor.position());
    if (reached != offset) return reached;
  }
  return offset;
}

std::size_t RichPieceLayout::next(std::size_t offset, QTextLayout::CursorMode mode) const {
  const bool isWord = mode == QTextLayout::SkipWords;
  return std::max(offset, stepped(offset, isWord ? QTextCursor::NextWord : QTextCursor::NextCharacter));
}

std::size_t RichPieceLayout::previous(std::size_t offset, QTextLayout::CursorMode mode) const {
  const bool isWord = mode == QTextLayout::SkipWords;
  return std::min(offset,
                  stepped(offset, isWord ? QTextCursor::PreviousWord : QTextCursor::PreviousCharacter));
}

void RichPieceLayout::draw(QPainter& painter, QPoint origin, const QRect& clip, TextRange selection,
                           const QPalette& palette) const {
  const QPointF top = origin + QPointF(0, above_);
  QAbstractTextDocumentLayout::PaintContext context;
  context.palette = palette;
  context.clip = QRectF(clip).translated(-top);
  if (selection.begin < piece().next && selection.end > piece().begin && !selection.isEmpty()) {
    QAbstractTextDocumentLayout::Selection selected;
    selected.cursor = QTextCursor(&content_->document());
    selected.cursor.setPosition(content_->positionOf(std::max(selection.begin, piece().begin)));
    selected.cursor.setPosition(content_->positionOf(std::min(selection.end, piece().end)),
                                QTextCursor::KeepAnchor);
    selected.format.setBackground(palette.highlight());
    selected.format.setForeground(palette.highlightedText());
    context.selections.append(selected);
  }
  painter.save();
  painter.translate(top);
  content_->document().documentLayout()->draw(&painter, context);
  drawAddedLines(painter, content_->document());
  painter.restore();
}

}  // namespace tarnix::qt
