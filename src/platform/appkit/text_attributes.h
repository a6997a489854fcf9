#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "platform/appkit/font.h"
#include "platform/coregraphics/cg_float.h"
#include "platform/foundation/string.h"

namespace tarnix {

// An opaque colour of a text, in sRGB.
struct TextColor {
  std::uint8_t red = 0;
  std::uint8_t green = 0;
  std::uint8_t blue = 0;

  friend bool operator==(const TextColor&, const TextColor&) = default;
};

enum class LineStyle : std::uint8_t { none, single, thick, twofold, dotted, dashed, wavy };
enum class TextCapitals : std::uint8_t { asWritten, all, small };

// How characters look. Absent colours are automatic: they are the view's.
struct TextAttributes {
  NSFont font;
  LineStyle underline = LineStyle::none;
  LineStyle strikethrough = LineStyle::none;  // none, single or twofold.
  TextCapitals capitals = TextCapitals::asWritten;
  std::int8_t superscript = 0;  // 1 is above the line, -1 below it.
  std::optional<TextColor> color;
  std::optional<TextColor> highlight;
  String link;        // Where it leads, as the document has it; empty for none. Not to be trusted.
  String attachment;  // The name of what the one character U+FFFC stands for; empty for none.

  friend bool operator==(const TextAttributes&, const TextAttributes&) = default;
};

enum class TextAlignment : std::uint8_t { natural, left, center, right, justified };
enum class WritingDirection : std::uint8_t { natural, leftToRight, rightToLeft };
enum class LineHeightRule : std::uint8_t { multiple, atLeast, exactly };

struct TabStop {
  CGFloat position = 0;  // From the leading margin.
  TextAlignment alignment = TextAlignment::left;

  friend bool operator==(const TabStop&, const TabStop&) = default;
};

// How a paragraph is laid out. Lengths are points, indents count from the margin of the side where they are.
struct ParagraphStyle {
  TextAlignment alignment = TextAlignment::natural;
  WritingDirection direction = WritingDirection::natural;
  LineHeightRule lineHeightRule = LineHeightRule::multiple;
  CGFloat lineHeight = 1;       // A factor, or points, as the rule says.
  CGFloat firstLineIndent = 0;  // Of the first line, from the margin, not from `headIndent`.
  CGFloat headIndent = 0;       // Of the other lines.
  CGFloat tailIndent = 0;
  CGFloat spacingBefore = 0;
  CGFloat spacingAfter = 0;
  std::vector<TabStop> tabStops;
  std::uint8_t headingLevel = 0;  // 1 to 6; 0 for a text.
  std::uint8_t listLevel = 0;     // 1 for an item of an outermost list; 0 for no item.
  // What stands before a list's item and, with a tab behind it, is part of the text: "1.", "•". Empty for a
  // further paragraph of the same item.
  String listMarker;

  friend bool operator==(const ParagraphStyle&, const ParagraphStyle&) = default;
};

// Where a paragraph stands in a table. Tables are counted from 0 in the order of their beginning; a table
// within a cell has a number, and a depth, of its own.
struct TableCell {
  std::uint32_t table = 0;
  std::uint32_t row = 0;
  std::uint32_t column = 0;
  std::uint16_t rowSpan = 1;
  std::uint16_t columnSpan = 1;
  std::uint16_t depth = 1;

  friend bool operator==(const TableCell&, const TableCell&) = default;
};

}  // namespace tarnix
