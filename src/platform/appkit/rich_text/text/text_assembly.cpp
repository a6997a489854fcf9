#include "platform/appkit/rich_text/text/text_assembly.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tarnix {

std::uint16_t AssembledParagraph::depth() const {
  if (tableDepth == 0) return isInTable ? 1 : 0;
  return std::min(tableDepth, TextAssembly::kMostDepth);
}

// A multiple counts in lines of 12 points.
ParagraphStyle AssembledParagraph::resolved() const {
  ParagraphStyle resolved = style;
  resolved.firstLineIndent = style.headIndent + firstLineOffset;
  if (style.headingLevel == 0) resolved.headingLevel = headingOfStyle;
  if (lineSpacing == 0) return resolved;
  if (isSpacingMultiple) {
    resolved.lineHeight = std::abs(lineSpacing) / 12;
  } else {
    resolved.lineHeightRule = lineSpacing < 0 ? LineHeightRule::exactly : LineHeightRule::atLeast;
    resolved.lineHeight = std::abs(lineSpacing);
  }
  return resolved;
}

void TextAssembly::append(std::string_view utf8, std::uint32_t attributes) {
  if (utf8.empty() || isFull()) return;
  writeSeparator();
  builder_.append(utf8, attributes);
  isParagraphEmpty_ = false;
}

void TextAssembly::endParagraph(std::uint32_t attributes, const AssembledParagraph& paragraph) {
  if (isFull()) return;
  writeSeparator();
  separator_ = Separator{'\n', attributes, styleOf(paragraph), false, cellIn(paragraph.depth())};
  isParagraphEmpty_ = true;
}

// Merged cells are there without content of their own.
void TextAssembly::endCell(std::uint32_t attributes, const AssembledParagraph& paragraph,
                           std::uint16_t depth) {
  if (isFull()) return;
  enter(depth);
  Table& table = tables_.back();
  const bool isLeftOut = isCovered(table.column) && isParagraphEmpty_;
  if (!isLeftOut) {
    writeSeparator();
    separator_ = Separator{'\t', attributes, styleOf(paragraph), true, cellIn(depth)};
    isParagraphEmpty_ = true;
  }
  ++tables_.back().column;
}

void TextAssembly::endRow(std::uint16_t depth) {
  if (separator_ && separator_->isOfCell) separator_->character = '\n';
  if (tables_.size() < depth) return;
  closeTables(depth);
  if (depth == 1) grid_.add(row_);
  ++tables_.back().row;
  tables_.back().column = 0;
}

void TextAssembly::beginCell(std::uint16_t depth, std::uint32_t column, std::uint16_t rowSpan,
                             std::uint16_t columnSpan) {
  enter(depth);
  tables_.back().column = column;
  tables_.back().rowSpan = rowSpan;
  tables_.back().columnSpan = columnSpan;
}

void TextAssembly::endTable(std::uint16_t depth) {
  if (depth > 0) closeTables(depth - 1U);
}

// Tables within one that is at hand end where the text goes on outside them.
void TextAssembly::enter(std::uint16_t depth) {
  closeTables(depth);
  while (tables_.size() < depth)
    tables_.push_back({.number = tableCount_++, .firstCell = builder_.cells().size()});
}

void TextAssembly::closeTables(std::size_t depth) {
  if (tables_.size() <= depth) return;
  if (depth == 0) {
    const Table& table = tables_.front();
    std::exchange(grid_, TableGrid()).arrange(builder_.cells().subspan(table.firstCell), table.number);
  }
  tables_.resize(depth);
}

bool TextAssembly::isCovered(std::uint32_t cell) const {
  if (tables_.size() != 1 || cell >= row_.cells.size()) return false;
  return row_.cells[cell].goesOnInColumns || row_.cells[cell].goesOnInRows;
}

std::uint32_t TextAssembly::styleOf(const AssembledParagraph& paragraph) {
  const bool hasMarker = !listMarker_.empty();
  if (!hasMarker && lastParagraph_ == paragraph) return lastStyle_;
  ParagraphStyle style = paragraph.resolved();
  style.listMarker = std::exchange(listMarker_, String());
  const bool isInList = paragraph.list != 0 || !style.listMarker.empty();
  if (isInList) style.listLevel = static_cast<std::uint8_t>(paragraph.listLevel + 1);
  const std::uint32_t added = builder_.add(style);
  if (hasMarker) return added;
  lastParagraph_ = paragraph;
  lastStyle_ = added;
  return added;
}

std::optional<TableCell> TextAssembly::cellIn(std::uint16_t depth) {
  enter(depth);
  if (depth == 0) return std::nullopt;
  const Table& table = tables_.back();
  return TableCell{table.number, table.row, table.column, table.rowSpan, table.columnSpan, depth};
}

void TextAssembly::writeSeparator() {
  if (const auto separator = std::exchange(separator_, std::nullopt))
    builder_.endParagraph(separator->character, separator->attributes, separator->style,
                          separator->cell ? &*separator->cell : nullptr);
}

NSAttributedString TextAssembly::take(const AssembledParagraph& last) {
  const auto cell = separator_ ? separator_->cell : cellIn(last.depth());
  builder_.endText(separator_ ? separator_->style : styleOf(last), cell ? &*cell : nullptr);
  separator_.reset();
  closeTables(0);
  return builder_.take();
}

}  // namespace tarnix
