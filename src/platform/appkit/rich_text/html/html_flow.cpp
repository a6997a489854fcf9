#include "platform/appkit/rich_text/html/html_flow.h"

#include <algorithm>
#include <utility>

#include "platform/foundation/utf8.h"

namespace tarnix {
namespace {

using WhiteSpace = HtmlStyle::WhiteSpace;

constexpr std::string_view kBlanks = " \t\n\r\f";
constexpr int kMostSpan = 1000;
constexpr double kMarkerRoom = 18;
constexpr std::uint32_t kMostColumns = 1000;

}  // namespace

void HtmlFlow::addText(std::string_view utf8, const HtmlStyle& style) {
  if (style.isHidden || utf8.empty()) return;
  switch (style.whiteSpace) {
    case WhiteSpace::normal:
    case WhiteSpace::nowrap:
      return addCollapsed(utf8, style);
    default:
      return addLines(utf8, style);
  }
}

void HtmlFlow::addCollapsed(std::string_view utf8, const HtmlStyle& style) {
  while (!utf8.empty()) {
    const std::size_t start = std::min(utf8.find_first_not_of(kBlanks), utf8.size());
    const bool isWithinLine = isOpen_ && !isBroken_ && lineBreaks_ == 0;
    if (start > 0 && isWithinLine && !hasBlank_) {
      hasBlank_ = true;
      blankAttributes_ = text_.add(style.look);
    }
    utf8.remove_prefix(start);
    const std::size_t end = std::min(utf8.find_first_of(kBlanks), utf8.size());
    append(utf8.substr(0, end), style);
    utf8.remove_prefix(end);
  }
}

// Each line is a paragraph, so that none gets endless.
void HtmlFlow::addLines(std::string_view utf8, const HtmlStyle& style) {
  while (true) {
    const std::size_t end = std::min(utf8.find('\n'), utf8.size());
    std::string_view line = utf8.substr(0, end);
    if (line.ends_with('\r')) line.remove_suffix(1);
    if (style.whiteSpace == WhiteSpace::preLine) {
      addCollapsed(line, style);
    } else {
      append(line, style);
    }
    if (end == utf8.size()) return;
    endLine(style);
    utf8.remove_prefix(end + 1);
  }
}

void HtmlFlow::append(std::string_view utf8, const HtmlStyle& style) {
  if (utf8.empty()) return;
  open(style);
  if (std::exchange(hasBlank_, false)) text_.append(" ", blankAttributes_);
  attributes_ = text_.add(style.look);
  text_.append(utf8, attributes_);
}

void HtmlFlow::addPicture(const String& name, const HtmlStyle& style) {
  if (style.isHidden) return;
  HtmlStyle picture = style;
  picture.look.attachment = name;
  append(kAttachment, picture);
}

// Makes sure that there is a paragraph for what comes next.
void HtmlFlow::open(const HtmlStyle& style) {
  flushBreaks();
  if (isOpen_) return;
  isOpen_ = true;
  hasBlank_ = false;
  paragraph_ = paragraphOf(style);
  if (marker_.empty()) return;
  const std::string marker = std::exchange(marker_, {});
  TextAttributes look = style.look;
  look.underline = look.strikethrough = LineStyle::none;
  look.link = String();
  text_.append(marker + "\t", text_.add(look));
  text_.setListMarker(String(marker));
  // The marker hangs before the text.
  paragraph_.firstLineOffset = -kMarkerRoom;
  paragraph_.style.tabStops = {{paragraph_.style.headIndent, TextAlignment::left}};
  paragraph_.style.listLevel = std::max<std::uint8_t>(paragraph_.style.listLevel, 1);
}

// The last line break of a block ends its line only; each further one is an empty line.
void HtmlFlow::flushBreaks() {
  const std::size_t breaks = std::exchange(lineBreaks_, 0);
  if (breaks > 0) hasBlank_ = false;
  if (!isBroken_) {
    for (std::size_t i = 0; i < breaks; ++i) text_.append(kLineSeparator, attributes_);
    return;
  }
  isBroken_ = false;
  const std::size_t empty = isOpen_ ? std::max<std::size_t>(breaks, 1) - 1 : breaks;
  if (isOpen_) endParagraph();
  for (std::size_t i = 0; i < empty; ++i) endParagraph();
}

void HtmlFlow::endParagraph() {
  text_.endParagraph(attributes_, paragraph_);
  isOpen_ = false;
  hasBlank_ = false;
}

void HtmlFlow::addLineBreak(const HtmlStyle& style) {
  if (style.isHidden) return;
  if (isBroken_) flushBreaks();
  if (!isOpen_ && lineBreaks_ == 0) paragraph_ = paragraphOf(style);
  if (!isOpen_) attributes_ = text_.add(style.look);
  hasBlank_ = false;
  ++lineBreaks_;
}

// The end of a line of source that counts.
void HtmlFlow::endLine(const HtmlStyle& style) {
  flushBreaks();
  if (!isOpen_) {
    paragraph_ = paragraphOf(style);
    attributes_ = text_.add(style.look);
  }
  endParagraph();
}

void HtmlFlow::breakBlock() {
  hasBlank_ = false;
  isBroken_ = isBroken_ || isOpen_ || lineBreaks_ > 0;
}

void HtmlFlow::beginItem(std::string marker) {
  breakBlock();
  marker_ = std::move(marker);
}

void HtmlFlow::endItem() { marker_.clear(); }

void HtmlFlow::beginTable() {
  breakBlock();
  flushBreaks();
  if (tables_.size() < TextAssembly::kMostDepth) tables_.emplace_back();
}

void HtmlFlow::endTable() {
  if (tables_.empty()) return;
  isBroken_ = isOpen_ = false;
  text_.endTable(depth());
  tables_.pop_back();
}

void HtmlFlow::beginRow() {
  if (tables_.empty()) return;
  Table& table = tables_.back();
  table.column = 0;
  table.isRowEmpty = true;
}

void HtmlFlow::beginCell(int rowSpan, int columnSpan) {
  if (tables_.empty()) return;
  Table& table = tables_.back();
  while (table.column < table.covered.size() && table.covered[table.column] > 0) ++table.column;
  table.columnSpan = std::clamp(columnSpan, 1, kMostSpan);
  rowSpan = std::clamp(rowSpan, 1, kMostSpan);
  const std::size_t end =
      std::min<std::size_t>(table.column + static_cast<std::size_t>(table.columnSpan), kMostColumns);
  if (table.covered.size() < end) table.covered.resize(end);
  for (std::size_t i = table.column; i < end; ++i) table.covered[i] = rowSpan;
  text_.beginCell(depth(), table.column, static_cast<std::uint16_t>(rowSpan),
                  static_cast<std::uint16_t>(table.columnSpan));
}

void HtmlFlow::endCell(const HtmlStyle& style) {
  if (tables_.empty()) return;
  lineBreaks_ = 0;
  isBroken_ = false;
  marker_.clear();
  if (!isOpen_) {
    paragraph_ = paragraphOf(style);
    attributes_ = text_.add(style.look);
  }
  Table& table = tables_.back();
  text_.endCell(attributes_, paragraph_, depth());
  isOpen_ = hasBlank_ = false;
  table.column = std::min(table.column + static_cast<std::uint32_t>(table.columnSpan), kMostColumns);
  table.isRowEmpty = false;
}

void HtmlFlow::endRow() {
  if (tables_.empty()) return;
  Table& table = tables_.back();
  for (int& rows : table.covered) rows = std::max(rows - 1, 0);
  if (!table.isRowEmpty) text_.endRow(depth());
}

std::uint16_t HtmlFlow::depth() const { return static_cast<std::uint16_t>(tables_.size()); }

AssembledParagraph HtmlFlow::paragraphOf(const HtmlStyle& style) const {
  AssembledParagraph paragraph;
  paragraph.style = style.paragraph;
  paragraph.firstLineOffset = style.paragraph.firstLineIndent - style.paragraph.headIndent;
  paragraph.isInTable = !tables_.empty();
  paragraph.tableDepth = depth();
  if (marker_.empty() && !isOpen_ && style.paragraph.listMarker.empty()) paragraph.style.listLevel = 0;
  return paragraph;
}

NSAttributedString HtmlFlow::take() { return text_.take(paragraph_); }

}  // namespace tarnix
