#include <gtest/gtest.h>

#include <array>
#include <random>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "platform/appkit/rich_text/rtf/rtf_reader.h"
#include "platform/appkit/rich_text/rtf/rtf_writer.h"

namespace tarnix {
namespace {

std::ostream& operator<<(std::ostream& out, const std::optional<TextColor>& color) {
  if (!color) return out << '-';
  return out << int{color->red} << '/' << int{color->green} << '/' << int{color->blue};
}

std::string described(const TextAttributes& look) {
  std::ostringstream out;
  out << look.font.familyName.view() << ' ' << look.font.pointSize << (look.font.isBold ? " bold" : "")
      << (look.font.isItalic ? " italic" : "") << " u" << static_cast<int>(look.underline) << " s"
      << static_cast<int>(look.strikethrough) << " c" << static_cast<int>(look.capitals) << " ^"
      << int{look.superscript} << ' ' << look.color << ' ' << look.highlight << " <" << look.link.view()
      << "> [" << look.attachment.view() << ']';
  return out.str();
}

std::string described(const ParagraphStyle& style) {
  std::ostringstream out;
  out << "== align " << static_cast<int>(style.alignment) << " direction "
      << static_cast<int>(style.direction) << " height " << static_cast<int>(style.lineHeightRule) << ':'
      << style.lineHeight << " indents " << style.firstLineIndent << ' ' << style.headIndent << ' '
      << style.tailIndent << " spacing " << style.spacingBefore << ' ' << style.spacingAfter << " heading "
      << int{style.headingLevel} << " list " << int{style.listLevel} << style.listMarker.view() << " tabs";
  for (const TabStop& stop : style.tabStops)
    out << ' ' << stop.position << ':' << static_cast<int>(stop.alignment);
  return out.str();
}

std::string described(const TableCell& cell) {
  std::ostringstream out;
  out << " cell " << cell.table << ' ' << cell.row << ' ' << cell.column << " spans " << cell.rowSpan << ' '
      << cell.columnSpan << " depth " << cell.depth;
  return out.str();
}

// A line for each paragraph's style and for each of its pieces.
std::string described(const NSAttributedString& text) {
  std::string lines;
  std::uint32_t begin = 0;
  std::size_t run = 0;
  for (const auto& paragraph : text.paragraphs()) {
    lines += described(text.styleOf(paragraph));
    if (const TableCell* const cell = text.cellOf(paragraph)) lines += described(*cell);
    lines += '\n';
    while (begin < paragraph.end) {
      const std::uint32_t end = std::min(paragraph.end, text.runs()[run].end);
      std::string piece(text.string().view().substr(begin, end - begin));
      if (piece.back() == '\n') piece.replace(piece.size() - 1, 1, "\\n");
      lines += "  '" + piece + "' " + described(text.attributesOf(text.runs()[run])) + '\n';
      if (end == text.runs()[run].end) ++run;
      begin = end;
    }
  }
  return lines;
}

// Texts of all that an attributed text can hold, so far as the format can say it.
class RandomText {
 public:
  explicit RandomText(std::uint32_t seed) : random_(seed) {}

  NSAttributedString make() {
    const std::uint32_t blocks = below(8);
    for (std::uint32_t i = 0; i < blocks; ++i) {
      switch (below(4)) {
        case 0:
          appendList();
          break;
        case 1:
          appendTable(1);
          appendParagraph(style(), '\n');  // Tables that touch would be one.
          break;
        default:
          appendParagraph(style(), '\n');
      }
    }
    if (chance(2)) {
      appendPieces(1 + below(3));
      builder_.endText(builder_.add(style()));
    }
    return builder_.take();
  }

 private:
  std::uint32_t below(std::uint32_t end) { return static_cast<std::uint32_t>(random_() % end); }
  bool chance(std::uint32_t in) { return below(in) == 0; }
  template <typename Value, std::size_t size>
  Value any(const std::array<Value, size>& values) {
    return values[below(size)];
  }
  CGFloat length() { return static_cast<CGFloat>(below(200)) / 2; }
  TextColor color() {
    const auto part = [&] { return static_cast<std::uint8_t>(below(4) * 85); };
    return {part(), part(), part()};
  }

  TextAttributes look() {
    TextAttributes look;
    if (chance(2)) return look;
    look.font = {any<const char*, 4>({"", "Serif", "Sans; Sérif {1}", "明朝"}), 0, chance(3), chance(3)};
    if (chance(2)) look.font.pointSize = 0.5 + length();
    if (chance(3)) look.underline = static_cast<LineStyle>(below(7));
    if (chance(4)) look.strikethrough = any<LineStyle, 2>({LineStyle::single, LineStyle::twofold});
    if (chance(4)) look.capitals = static_cast<TextCapitals>(below(3));
    if (chance(4)) look.superscript = chance(2) ? 1 : -1;
    if (chance(3)) look.color = color();
    if (chance(4)) look.highlight = color();
    if (look.font.familyName == "Sans; Sérif {1}") look.font.familyName = "Sans Sérif {1}";
    return look;
  }

  void appendPieces(std::uint32_t count) {
    constexpr std::array<const char*, 16> kPieces = {"word",
                                                     " two words ",
                                                     "{\\}",
                                                     "a\tb",
                                                     "é",
                                                     "\u8000",
                                                     "😀",
                                                     "שלום",
                                                     "日本語",
                                                     "e\u0301",
                                                     "\u00A0",
                                                     "\u00AD",
                                                     "\u2028",
                                                     "-12",
                                                     "'41 ? * ~ \"",
                                                     "\u2011\u200D\u2003"};
    for (std::uint32_t i = 0; i < count; ++i) {
      TextAttributes attributes = look();
      if (chance(8)) {
        attributes.attachment = any<const char*, 3>({"picture.png", "}{\\", "ü 1"});
        builder_.append("\uFFFC", attributes);
        continue;
      }
      if (chance(5))
        attributes.link = any<const char*, 4>({"https://a.example/?b=1&c#d", "#place", "x\"y\\z}", "ü"});
      builder_.append(any(kPieces), attributes);
    }
  }

  ParagraphStyle style() {
    ParagraphStyle style;
    if (chance(2)) return style;
    style.alignment = static_cast<TextAlignment>(below(5));
    style.direction = static_cast<WritingDirection>(below(3));
    if (chance(3)) style.firstLineIndent = length();
    if (chance(3)) style.headIndent = length();
    if (chance(3)) style.tailIndent = length();
    if (chance(3)) style.spacingBefore = length();
    if (chance(3)) style.spacingAfter = length();
    if (chance(3)) {
      style.lineHeightRule = static_cast<LineHeightRule>(below(3));
      style.lineHeight = style.lineHeightRule == LineHeightRule::multiple ? 1 + below(8) / 4.0 : 1 + length();
    }
    for (std::uint32_t i = chance(4) ? below(4) : 0; i > 0; --i)
      style.tabStops.push_back(
          {200 - 30.0 * i,
           any<TextAlignment, 3>({TextAlignment::left, TextAlignment::center, TextAlignment::right})});
    if (chance(5)) style.headingLevel = static_cast<std::uint8_t>(1 + below(6));
    return style;
  }

  void appendParagraph(const ParagraphStyle& style, char end, const TableCell* cell = nullptr) {
    appendPieces(below(4));
    builder_.endParagraph(end, builder_.add(look()), builder_.add(style), cell);
  }

  void appendList() {
    for (std::uint32_t i = 1 + below(5); i > 0; --i) {
      ParagraphStyle item = style();
      item.headingLevel = 0;
      item.listLevel = static_cast<std::uint8_t>(1 + below(9));
      if (!chance(4)) {
        item.listMarker = any<const char*, 8>({"1.", "2.", "•", "(iv)", "C)", "–", "1.2.3", "١-"});
        builder_.append(item.listMarker.str() + "\t", look());
      }
      appendParagraph(item, '\n');
    }
  }

  void appendCell(const TableCell& cell, char end) {
    const ParagraphStyle own = style();
    while (chance(3)) {
      if (cell.depth < 3 && chance(2)) appendTable(static_cast<std::uint16_t>(cell.depth + 1));
      appendParagraph(own, '\n', &cell);
    }
    appendParagraph(own, end, &cell);
  }

  // Spans in inner tables are written, but not read.
  void appendTable(std::uint16_t depth) {
    const std::uint32_t table = tables_++;
    const std::uint32_t rows = 1 + below(4);
    const std::uint32_t columns = 1 + below(4);
    std::vector<std::uint32_t> freeFrom(columns, 0);  // The first row in which nothing from above stands.
    for (std::uint32_t row = 0; row < rows; ++row) {
      std::vector<TableCell> cells;
      for (std::uint32_t column = 0; column < columns;) {
        TableCell cell{table, row, column, 1, 1, depth};
        if (freeFrom[column] > row) {
          ++column;
          continue;
        }
        if (depth == 1) span(cell, rows, freeFrom);
        column += cell.columnSpan;
        cells.push_back(cell);
      }
      for (const TableCell& cell : cells) appendCell(cell, cell == cells.back() ? '\n' : '\t');
    }
  }

  // The first column has something of its own in each row.
  void span(TableCell& cell, std::uint32_t rows, std::vector<std::uint32_t>& freeFrom) {
    std::uint32_t end = cell.column + 1;
    while (chance(3) && end < freeFrom.size() && freeFrom[end] <= cell.row) ++end;
    cell.columnSpan = static_cast<std::uint16_t>(end - cell.column);
    if (cell.column > 0 && chance(4)) cell.rowSpan = static_cast<std::uint16_t>(1 + below(rows - cell.row));
    std::fill(freeFrom.begin() + cell.column, freeFrom.begin() + end, cell.row + cell.rowSpan);
  }

  std::mt19937 random_;
  AttributedStringBuilder builder_;
  std::uint32_t tables_ = 0;
};

TEST(RtfRoundTrip, readingGivesWhatWasWritten) {
  for (std::uint32_t seed = 0; seed < 150; ++seed) {
    const NSAttributedString text = RandomText(seed).make();
    const String rtf = rtfFrom(text);
    const auto read = attributedStringFromRtf(rtf);
    ASSERT_TRUE(read) << seed;
    ASSERT_EQ(described(*read), described(text)) << "Seed " << seed << ":\n" << rtf.view();
    ASSERT_TRUE(*read == text) << seed;
  }
}

}  // namespace
}  // namespace tarnix
