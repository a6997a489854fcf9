#pragma once

#include <cstdint>
#include <map>
#include <unordered_map>
#include <vector>

#include "platform/appkit/attributed_string.h"

namespace tarnix {

// One \cellx of a row. A cell that spans columns or rows is written as several of them that are merged.
struct RtfBox {
  std::uint32_t column = 0;
  bool isOwn = false;  // A paragraph of the text stands in it; the rest are empty.
  bool beginsColumns = false;
  bool goesOnInColumns = false;
  bool beginsRows = false;
  bool goesOnInRows = false;
};

// The rows of all tables of a text.
class RtfRows {
 public:
  explicit RtfRows(const NSAttributedString& text);

  // Of the row that the cell is in; `one()` if the text doesn't tell of it.
  const std::vector<RtfBox>& boxesOf(const TableCell& cell) const;
  static const std::vector<RtfBox>& one();
  // How many columns the widest row of the same table has, at least 1.
  std::uint32_t columnsOf(const TableCell& cell) const;

 private:
  struct Table {
    std::map<std::uint32_t, std::vector<TableCell>> cells;
    std::unordered_map<std::uint32_t, std::vector<RtfBox>> boxes;
    std::uint32_t columns = 1;
  };
  static void layOut(Table& table, std::uint32_t& empty);

  std::unordered_map<std::uint32_t, Table> tables_;
};

}  // namespace tarnix
