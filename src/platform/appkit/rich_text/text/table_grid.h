#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "platform/appkit/text_attributes.h"

namespace tarnix {

// How a document lays out the cells of a row, in order.
struct TableRow {
  static constexpr std::size_t kMostCells = 256;

  struct Cell {
    std::int32_t rightEdge = 0;
    bool goesOnInColumns = false;  // Is one with the cell before it.
    bool goesOnInRows = false;     // Is one with the cell above it.
    friend bool operator==(const Cell&, const Cell&) = default;
  };
  std::int32_t leftEdge = 0;
  std::vector<Cell> cells;

  friend bool operator==(const TableRow&, const TableRow&) = default;
};

// Where the cells of one table stand, which is known when all its rows are: the rows of a document have edges
// of their own, and those of all rows make the columns.
class TableGrid {
 public:
  // The next row, which may tell nothing of its cells.
  void add(const TableRow& row);
  // Gives those of `cells` that are this table's, each with the number of the cell in its row for a column,
  // their columns and spans. Rows whose edges make no sense stay as they are.
  void arrange(std::span<TableCell> cells, std::uint32_t table) const;

 private:
  using Entries = std::span<TableCell>;

  std::vector<std::int32_t> edges() const;

  std::vector<TableRow> rows_;             // Each once.
  std::vector<std::uint32_t> rowNumbers_;  // For each row of the table, its index in `rows_`.
};

}  // namespace tarnix
