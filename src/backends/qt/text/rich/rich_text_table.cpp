#include "backends/qt/text/rich/rich_text_table.h"

#include <algorithm>

#include "backends/qt/text/rich/rich_text_formats.h"

namespace tarnix::qt {
namespace {

constexpr int kDeepest = 4;
constexpr int kLeastColumnWidth = 60;

}  // namespace

RichTable::RichTable(RichDocument& document, const TablePart& part, int level)
    : document_(document), part_(part), level_(level) {}

const TableCell& RichTable::cellOf(std::size_t paragraph) const {
  return *document_.text().cellOf(document_.text().paragraphs()[paragraph]);
}

std::size_t RichTable::endOf(std::size_t paragraph) const {
  return document_.text().paragraphs()[paragraph].end;
}

void RichTable::write(QTextCursor cursor) {
  insertTable(cursor);
  std::size_t begin = part_.begin;
  for (std::size_t each = part_.firstParagraph; each < part_.lastParagraph;) {
    if (cellOf(each).depth > level_ && level_ < kDeepest) {
      each = writeNested(each, begin);
    } else {
      enterCell(cellOf(each));
      writeParagraph(each++, begin);
    }
    begin = endOf(each - 1);
  }
}

void RichTable::insertTable(QTextCursor& cursor) {
  int rows = 0;
  std::optional<std::uint32_t> row;
  for (std::size_t each = part_.firstParagraph; each < part_.lastParagraph; ++each) {
    const TableCell& cell = cellOf(each);
    if (cell.depth > level_ || row == cell.row) continue;
    row = cell.row;
    ++rows;
  }
  table_ = cursor.insertTable(std::max(rows, 1), part_.columns, tableFormat(document_.style()));
  setWidths();
}

// Columns of set widths where the rows come in several tables, or where there is too little room to choose.
void RichTable::setWidths() {
  const int width = document_.style().width;
  if (part_.weights.empty() && part_.columns * kLeastColumnWidth < width) return;
  QList<QTextLength> widths;
  for (int column = 0; column < part_.columns; ++column) {
    const double share =
        part_.weights.empty() ? 1.0 / part_.columns : part_.weights[static_cast<std::size_t>(column)];
    widths.append(QTextLength(QTextLength::PercentageLength, 100 * share));
  }
  QTextTableFormat format = table_->format();
  format.setColumnWidthConstraints(widths);
  format.setWidth(QTextLength(QTextLength::PercentageLength, 100));
  table_->setFormat(format);
}

void RichTable::enterCell(const TableCell& wanted) {
  if (sourceRow_ != wanted.row && row_ + 1 < table_->rows()) {
    sourceRow_ = wanted.row;
    ++row_;
    column_ = -1;
  }
  const int column =
      static_cast<int>(std::min<std::uint32_t>(wanted.column, static_cast<std::uint32_t>(part_.columns) - 1));
  const QTextTableCell cell = table_->cellAt(std::max(row_, 0), column);
  const bool isOther = column > column_ && cell.row() == row_ && cell.column() == column;
  if (!isOther && cell_.isValid()) return;
  column_ = column;
  const int rowSpan = std::min<int>(wanted.rowSpan, table_->rows() - cell.row());
  const int columnSpan = std::min<int>(wanted.columnSpan, part_.columns - cell.column());
  if (rowSpan > 1 || columnSpan > 1)
    table_->mergeCells(cell.row(), cell.column(), std::max(rowSpan, 1), std::max(columnSpan, 1));
  cell_ = table_->cellAt(cell.row(), cell.column());
  isFresh_ = true;
}

// What is covered by a wider or higher cell holds nothing, and is not to add a line to that.
void RichTable::writeParagraph(std::size_t paragraph, std::size_t begin) {
  const TextRange part{begin, endOf(paragraph) - (document_.endsWithSeparator(paragraph) ? 1 : 0)};
  if (part.isEmpty() && !isFresh_ && cellOf(paragraph).column != static_cast<unsigned>(cell_.column()))
    return;
  QTextCursor cursor = cell_.lastCursorPosition();
  if (!std::exchange(isFresh_, false)) cursor.insertBlock();
  document_.writeParagraph(cursor, paragraph, part, document_.style().width / part_.columns);
}

std::size_t RichTable::writeNested(std::size_t paragraph, std::size_t begin) {
  std::size_t end = paragraph;
  std::uint32_t columns = 1;
  while (end < part_.lastParagraph && cellOf(end).depth > level_) {
    const TableCell& cell = cellOf(end++);
    if (cell.depth == level_ + 1) columns = std::max(columns, cell.column + cell.columnSpan);
  }
  // The cell is that of the paragraph that follows, which ends it.
  enterCell(end < part_.lastParagraph ? cellOf(end) : TableCell());
  const TablePart part{paragraph, end, begin, static_cast<int>(std::min(columns, kMostColumns)), {}};
  RichTable(document_, part, level_ + 1).write(cell_.lastCursorPosition());
  isFresh_ = true;
  return end;
}

}  // namespace tarnix::qt
