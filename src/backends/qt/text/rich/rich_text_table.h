#pragma once

#include <QTextCursor>
#include <QTextTable>
#include <cstddef>
#include <optional>

#include "backends/qt/text/rich/rich_text_document.h"

namespace tarnix::qt {

// Writes a table, or some rows of one, into a document at a cursor. Rows are taken as they come, whatever
// their numbers, and what has no cell of its own goes on in the one before.
class RichTable {
 public:
  RichTable(RichDocument& document, const TablePart& part, int level = 1);

  void write(QTextCursor cursor);

 private:
  void insertTable(QTextCursor& cursor);
  void setWidths();
  std::size_t endOf(std::size_t paragraph) const;
  const TableCell& cellOf(std::size_t paragraph) const;
  void enterCell(const TableCell& wanted);
  void writeParagraph(std::size_t paragraph, std::size_t begin);
  // What is deeper than this table from `paragraph` on. Gives the paragraph behind it.
  std::size_t writeNested(std::size_t paragraph, std::size_t begin);

  RichDocument& document_;
  const TablePart& part_;
  int level_;
  QTextTable* table_ = nullptr;
  std::optional<std::uint32_t> sourceRow_;
  int row_ = -1;
  int column_ = -1;
  QTextTableCell cell_;  // Where the text goes.
  bool isFresh_ = true;  // It ends with an empty block.
};

}  // namespace tarnix::qt
