#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/appkit/attributed_string.h"
#include "platform/appkit/rich_text/text/table_grid.h"

namespace tarnix {

// A paragraph's look while it is read, in the words of the document.
struct AssembledParagraph {
  ParagraphStyle style;         // Without what the fields below tell.
  CGFloat firstLineOffset = 0;  // From the other lines.
  CGFloat lineSpacing = 0;      // In points; negative for an exact one, 0 for the font's.
  bool isSpacingMultiple = false;
  TextAlignment nextTab = TextAlignment::left;
  std::int32_t list = 0;  // 0 for none.
  std::uint8_t listLevel = 0;
  std::uint8_t headingOfStyle = 0;  // Where `style` tells of none.
  bool isInTable = false;
  std::uint16_t tableDepth = 0;  // 0 where the document says nothing of nesting.

  std::uint16_t depth() const;
  ParagraphStyle resolved() const;
  friend bool operator==(const AssembledParagraph&, const AssembledParagraph&) = default;
};

// Puts together what a document says. What ends a paragraph is only written when something follows, since the
// end of a row makes another separator of that of its last cell, and the text's last paragraph ends without
// one.
class TextAssembly {
 public:
  static constexpr std::size_t kMostBytes = std::size_t{64} << 20;
  static constexpr std::uint16_t kMostDepth = 16;

  std::uint32_t add(const TextAttributes& attributes) { return builder_.add(attributes); }

  void append(std::string_view utf8, std::uint32_t attributes);
  void endParagraph(std::uint32_t attributes, const AssembledParagraph& paragraph);
  void endCell(std::uint32_t attributes, const AssembledParagraph& paragraph, std::uint16_t depth);
  void endRow(std::uint16_t depth);
  // The next cell of the table in this depth stands in this column and is so large, for those who know.
  void beginCell(std::uint16_t depth, std::uint32_t column, std::uint16_t rowSpan, std::uint16_t columnSpan);
  // What comes next belongs to a table of its own.
  void endTable(std::uint16_t depth);
  // How the cells of an outermost table's rows are laid out from now on.
  TableRow& row() { return row_; }

  bool isFull() const { return builder_.size() >= kMostBytes; }
  // Nothing was appended to the paragraph at hand.
  bool isParagraphEmpty() const { return isParagraphEmpty_; }
  // Of the paragraph at hand.
  void setListMarker(String marker) { listMarker_ = std::move(marker); }
  // `last` is that of the text behind the last end of a paragraph.
  NSAttributedString take(const AssembledParagraph& last);

 private:
  struct Table {
    std::uint32_t number = 0;
    std::uint32_t row = 0;
    std::uint32_t column = 0;
    std::uint16_t rowSpan = 1;
    std::uint16_t columnSpan = 1;
    std::size_t firstCell = 0;
  };
  struct Separator {
    char character = '\n';
    std::uint32_t attributes = 0;
    std::uint32_t style = 0;
    bool isOfCell = false;
    std::optional<TableCell> cell;
  };

  void writeSeparator();
  void enter(std::uint16_t depth);
  std::optional<TableCell> cellIn(std::uint16_t depth);
  std::uint32_t styleOf(const AssembledParagraph& paragraph);
  bool isCovered(std::uint32_t cell) const;
  void closeTables(std::size_t depth);

  AttributedStringBuilder builder_;
  std::optional<Separator> separator_;
  // The last one without a marker, and its style.
  std::optional<AssembledParagraph> lastParagraph_;
  std::uint32_t lastStyle_ = 0;
  std::vector<Table> tables_;  // The one at hand in each depth.
  std::uint32_t tableCount_ = 0;
  TableRow row_;
  TableGrid grid_;  // Of the outermost table at hand.
  String listMarker_;
  bool isParagraphEmpty_ = true;
};

}  // namespace tarnix
