#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/appkit/rich_text/html/html_style.h"
#include "platform/appkit/rich_text/text/text_assembly.h"

namespace tarnix {

// Lays the texts of a document's elements out as a browser does: white space, blocks, items of lists, tables.
class HtmlFlow {
 public:
  void addText(std::string_view utf8, const HtmlStyle& style);
  void addLineBreak(const HtmlStyle& style);
  void addPicture(const String& name, const HtmlStyle& style);
  // What comes next stands in a line of its own.
  void breakBlock();
  void beginItem(std::string marker);
  void endItem();

  void beginTable();
  void endTable();
  void beginRow();
  void endRow();
  void beginCell(int rowSpan, int columnSpan);
  void endCell(const HtmlStyle& style);

  bool isFull() const { return text_.isFull(); }
  NSAttributedString take();

 private:
  struct Table {
    std::vector<int>
        covered;  // By column, in how many rows from the present one on a cell from above stands.
    std::uint32_t column = 0;
    int columnSpan = 1;
    bool isRowEmpty = true;
  };

  void addCollapsed(std::string_view utf8, const HtmlStyle& style);
  void addLines(std::string_view utf8, const HtmlStyle& style);
  void endLine(const HtmlStyle& style);
  void append(std::string_view utf8, const HtmlStyle& style);
  void open(const HtmlStyle& style);
  void flushBreaks();
  void endParagraph();
  AssembledParagraph paragraphOf(const HtmlStyle& style) const;
  std::uint16_t depth() const;

  TextAssembly text_;
  AssembledParagraph paragraph_;  // Of the text at hand.
  std::uint32_t attributes_ = 0;  // Of the last text.
  bool isOpen_ = false;           // The paragraph has text.
  bool isBroken_ = false;         // It ends as soon as something follows.
  std::size_t lineBreaks_ = 0;    // That count as soon as something follows.
  bool hasBlank_ = false;         // A blank that counts if a text follows in the same line.
  std::uint32_t blankAttributes_ = 0;
  std::string marker_;  // Of the item whose text is still to come.
  std::vector<Table> tables_;
};

}  // namespace tarnix
