#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <unordered_set>
#include <vector>

#include "platform/appkit/attributed_string.h"
#include "platform/appkit/rich_text/rtf/rtf_output.h"
#include "platform/appkit/rich_text/rtf/rtf_rows.h"

namespace tarnix {

// Begins and ends rows and cells around the paragraphs of a text. Both arguments outlive it.
class RtfTableWriter {
 public:
  RtfTableWriter(const NSAttributedString& text, RtfOutput& out);

  // Before a paragraph's properties: ends the rows that it isn't in and begins its own.
  void begin(std::size_t paragraph);
  // What \pard is followed by.
  void writeProperties();
  // Behind its text. Whether this ended a cell, which stands for the end of the paragraph.
  bool endParagraph(std::size_t paragraph);
  // Behind the last one.
  void finish() { closeDownTo(0); }

 private:
  struct Row {
    TableCell cell;  // The one at hand.
    bool isKnown = false;
    const std::vector<RtfBox>* boxes = nullptr;
    std::size_t box = 0;    // How many boxes have ended.
    bool hasInner = false;  // Rows of an inner table stand in the cell at hand.
  };
  using Path = std::vector<std::optional<TableCell>>;

  std::size_t depthOf(std::size_t paragraph) const;
  const TableCell& cellOf(std::size_t paragraph) const;
  Path pathTo(std::size_t paragraph) const;

  void closeDownTo(std::size_t depth);
  void closeRow();
  void open(const std::optional<TableCell>& cell);
  void skipTo(std::size_t depth, std::uint32_t column);
  void endCell(std::size_t depth);
  void endEmptyCell(std::size_t depth);
  void writeDefinition(const Row& row);

  const NSAttributedString& text_;
  RtfOutput& out_;
  RtfRows rows_;
  // For each paragraph, the next one that lies as deep or less, and that lies less deep.
  std::vector<std::uint32_t> nextBeside_;
  std::vector<std::uint32_t> nextOutside_;
  std::unordered_set<std::uint64_t> closed_;  // Rows that were written, by their table and number.
  std::vector<Row> open_;                     // From the outermost table to the innermost.
};

}  // namespace tarnix
