#include "platform/appkit/rich_text/rtf/rtf_table_writer.h"

#include <algorithm>
#include <array>

namespace tarnix {
namespace {

constexpr std::size_t kDeepest = 16;    // What lies deeper is written as lying there.
constexpr std::uint32_t kWidth = 9000;  // Of all columns, in twips; a text doesn't tell of any.
constexpr std::uint32_t kMostWrittenColumns = kWidth;

std::uint64_t keyOf(const TableCell& cell) { return std::uint64_t{cell.table} << 32U | cell.row; }

}  // namespace

RtfTableWriter::RtfTableWriter(const NSAttributedString& text, RtfOutput& out)
    : text_(text), out_(out), rows_(text) {
  const std::size_t count = text.paragraphs().size();
  nextBeside_.resize(count);
  nextOutside_.resize(count);
  std::array<std::uint32_t, kDeepest + 1> next;  // For each depth, the next that is at most as deep.
  next.fill(static_cast<std::uint32_t>(count));
  for (std::size_t i = count; i-- > 0;) {
    const std::size_t depth = depthOf(i);
    nextBeside_[i] = next[depth];
    nextOutside_[i] = depth == 0 ? next[0] : next[depth - 1];
    std::fill(next.begin() + static_cast<std::ptrdiff_t>(depth), next.end(), static_cast<std::uint32_t>(i));
  }
}

std::size_t RtfTableWriter::depthOf(std::size_t paragraph) const {
  const TableCell* const cell = text_.cellOf(text_.paragraphs()[paragraph]);
  return cell != nullptr ? std::clamp<std::size_t>(cell->depth, 1, kDeepest) : 0;
}

const TableCell& RtfTableWriter::cellOf(std::size_t paragraph) const {
  return *text_.cellOf(text_.paragraphs()[paragraph]);
}

// The cells around a paragraph, from the outermost one. An outer cell is known by the paragraph of it that
// follows the inner table.
RtfTableWriter::Path RtfTableWriter::pathTo(std::size_t paragraph) const {
  Path path(depthOf(paragraph));
  if (path.empty()) return path;
  path.back() = cellOf(paragraph);
  std::size_t at = paragraph;
  for (std::size_t depth = path.size() - 1; depth > 0; --depth) {
    if (at < nextOutside_.size() && depthOf(at) > depth) at = nextOutside_[at];
    if (at < nextOutside_.size() && depthOf(at) == depth) path[depth - 1] = cellOf(at);
  }
  return path;
}

void RtfTableWriter::begin(std::size_t paragraph) {
  const Path path = pathTo(paragraph);
  for (std::size_t depth = 0; depth < path.size(); ++depth) {
    const auto& cell = path[depth];
    if (depth < open_.size() && cell) {
      const Row& row = open_[depth];
      const bool isSameRow = row.isKnown && row.cell.table == cell->table && row.cell.row == cell->row;
      const bool isSameCell = isSameRow && row.cell.column == cell->column;
      if (!isSameCell) closeDownTo(isSameRow ? depth + 1 : depth);
    }
    if (depth >= open_.size()) open(cell);
    if (cell) skipTo(depth, cell->column);
  }
  closeDownTo(path.size());
}

void RtfTableWriter::open(const std::optional<TableCell>& cell) {
  if (!open_.empty()) open_.back().hasInner = true;
  Row row;
  row.isKnown = cell.has_value();
  if (cell) row.cell = *cell;
  // What comes back to a row that has ended is a row of its own, of one box.
  row.boxes = cell && closed_.count(keyOf(*cell)) == 0 ? &rows_.boxesOf(*cell) : &RtfRows::one();
  open_.push_back(row);
  // An inner table's definition stands behind its row.
  if (open_.size() == 1) writeDefinition(row);
}

// Ends the empty boxes before a column.
void RtfTableWriter::skipTo(std::size_t depth, std::uint32_t column) {
  Row& row = open_[depth];
  row.cell.column = column;
  const auto& boxes = *row.boxes;
  while (row.box < boxes.size() && !(boxes[row.box].isOwn && boxes[row.box].column >= column))
    endEmptyCell(depth);
}

void RtfTableWriter::writeProperties() {
  if (open_.empty()) return;
  out_.word("intbl");
  if (open_.size() > 1) out_.word("itap", static_cast<int>(open_.size()));
}

bool RtfTableWriter::endParagraph(std::size_t paragraph) {
  if (open_.empty()) return false;
  const TableCell& cell = cellOf(paragraph);
  const std::size_t next = nextBeside_[paragraph];
  if (next < nextBeside_.size() && depthOf(next) == open_.size()) {
    const TableCell& other = cellOf(next);
    if (other.table == cell.table && other.row == cell.row && other.column == cell.column) return false;
  }
  endCell(open_.size() - 1);
  const auto& boxes = *open_.back().boxes;
  while (open_.back().box < boxes.size() && boxes[open_.back().box].goesOnInColumns)
    endEmptyCell(open_.size() - 1);
  return true;
}

void RtfTableWriter::endCell(std::size_t depth) {
  Row& row = open_[depth];
  out_.word(depth == 0 ? "cell" : "nestcell");
  ++row.box;
  row.hasInner = false;
}

void RtfTableWriter::endEmptyCell(std::size_t depth) {
  out_.raw("\\pard\\intbl");
  if (depth > 0) out_.word("itap", static_cast<int>(depth) + 1);
  endCell(depth);
}

void RtfTableWriter::closeDownTo(std::size_t depth) {
  while (open_.size() > depth) closeRow();
}

void RtfTableWriter::closeRow() {
  const Row& row = open_.back();
  const std::size_t depth = open_.size() - 1;
  while (row.box < row.boxes->size() || row.hasInner) endEmptyCell(depth);
  if (depth == 0) {
    out_.word("row");
  } else {
    out_.raw("{\\*\\nesttableprops");
    writeDefinition(row);
    out_.raw("\\nestrow}{\\nonesttables\\par}");
  }
  out_.lineBreak();
  if (row.isKnown) closed_.insert(keyOf(row.cell));
  open_.pop_back();
}

void RtfTableWriter::writeDefinition(const Row& row) {
  const std::uint32_t columns = std::min(rows_.columnsOf(row.cell), kMostWrittenColumns);
  out_.word("trowd");
  out_.word("irow", static_cast<int>(std::min<std::uint32_t>(row.cell.row, 2'000'000'000)));
  for (const RtfBox& box : *row.boxes) {
    if (box.beginsRows) out_.word("clvmgf");
    if (box.goesOnInRows) out_.word("clvmrg");
    if (box.beginsColumns) out_.word("clmgf");
    if (box.goesOnInColumns) out_.word("clmrg");
    const std::uint32_t right = std::min(box.column + 1, columns);
    out_.word("cellx", static_cast<int>(right * (kWidth / columns)));
  }
}

}  // namespace tarnix
