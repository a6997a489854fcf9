#include "platform/appkit/rich_text/rtf/rtf_rows.h"

#include <algorithm>
#include <iterator>

namespace tarnix {
namespace {

// Beyond these, cells don't merge, so that a damaged table stays small.
constexpr std::uint32_t kWidestSpan = 64;
constexpr std::size_t kMostCovered = 64;
constexpr std::uint32_t kMostEmptyBoxes = 50'000;

std::uint32_t spanOf(const TableCell& cell) {
  return std::clamp<std::uint32_t>(cell.columnSpan, 1, kWidestSpan);
}

bool reaches(const TableCell& cell, std::uint32_t row) {
  return cell.row < row && row - cell.row < cell.rowSpan;
}

// One box for each column. `empty` is how many empty ones may still be made.
void appendBoxes(std::vector<RtfBox>& boxes, const TableCell& cell, std::uint32_t row, std::uint32_t& empty) {
  const bool isOwn = cell.row == row;
  const std::uint32_t span = std::min(spanOf(cell), isOwn ? empty + 1 : empty);
  for (std::uint32_t i = 0; i < span; ++i) {
    RtfBox box{.column = cell.column + i};
    box.isOwn = i == 0 && isOwn;
    box.beginsColumns = i == 0 && span > 1;
    box.goesOnInColumns = i > 0;
    box.beginsRows = isOwn && cell.rowSpan > 1;
    box.goesOnInRows = !isOwn;
    boxes.push_back(box);
    if (!box.isOwn) --empty;
  }
}

bool isBefore(const TableCell& a, const TableCell& b) { return a.column < b.column; }

// Each column once.
void sortColumns(std::vector<TableCell>& cells) {
  std::stable_sort(cells.begin(), cells.end(), isBefore);
  const auto isSame = [](const TableCell& a, const TableCell& b) { return a.column == b.column; };
  cells.erase(std::unique(cells.begin(), cells.end(), isSame), cells.end());
}

std::vector<RtfBox> boxesFor(const std::vector<TableCell>& cells, std::uint32_t row, std::uint32_t& empty) {
  std::vector<RtfBox> boxes;
  for (const TableCell& cell : cells) {
    const std::uint32_t end = boxes.empty() ? 0 : boxes.back().column + 1;
    if (cell.column > end && empty > 0) {
      boxes.push_back({.column = cell.column - 1});
      --empty;
    }
    appendBoxes(boxes, cell, row, empty);
  }
  return boxes;
}

}  // namespace

RtfRows::RtfRows(const NSAttributedString& text) {
  const TableCell* last = nullptr;
  for (const auto& paragraph : text.paragraphs()) {
    const TableCell* const cell = text.cellOf(paragraph);
    if (cell == nullptr || (last != nullptr && *last == *cell)) continue;
    tables_[cell->table].cells[cell->row].push_back(*cell);
    last = cell;
  }
  std::uint32_t empty = kMostEmptyBoxes;
  for (auto& [number, table] : tables_) layOut(table, empty);
}

void RtfRows::layOut(Table& table, std::uint32_t& empty) {
  std::vector<TableCell> above;  // Which reach into the rows below.
  for (auto& [row, cells] : table.cells) {
    sortColumns(cells);
    const auto isGone = [&cells = cells, row = row](const TableCell& cell) {
      return !reaches(cell, row) || std::binary_search(cells.begin(), cells.end(), cell, isBefore);
    };
    above.erase(std::remove_if(above.begin(), above.end(), isGone), above.end());
    std::vector<TableCell> all;
    std::merge(cells.begin(), cells.end(), above.begin(), above.end(), std::back_inserter(all), isBefore);
    table.boxes[row] = boxesFor(all, row, empty);
    for (const TableCell& cell : all) table.columns = std::max(table.columns, cell.column + spanOf(cell));
    above.clear();
    const auto hasRowsBelow = [](const TableCell& cell) { return cell.rowSpan > 1; };
    std::copy_if(all.begin(), all.end(), std::back_inserter(above), hasRowsBelow);
    if (above.size() > kMostCovered) above.resize(kMostCovered);
  }
}

const std::vector<RtfBox>& RtfRows::one() {
  static const std::vector<RtfBox> kOne = {{.isOwn = true}};
  return kOne;
}

const std::vector<RtfBox>& RtfRows::boxesOf(const TableCell& cell) const {
  const auto table = tables_.find(cell.table);
  if (table == tables_.end()) return one();
  const auto row = table->second.boxes.find(cell.row);
  return row == table->second.boxes.end() ? one() : row->second;
}

std::uint32_t RtfRows::columnsOf(const TableCell& cell) const {
  const auto table = tables_.find(cell.table);
  return table == tables_.end() ? 1 : table->second.columns;
}

}  // namespace tarnix
