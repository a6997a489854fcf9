#include "platform/appkit/rich_text/html/html_writer.h"

#include <array>
#include <charconv>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/foundation/markup.h"

namespace tarnix {
namespace {

constexpr std::string_view kSafeSchemes[] = {"http://", "https://", "mailto:"};

std::string number(double value) {
  std::array<char, 32> buffer{};
  const auto end =
      std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::fixed, 2).ptr;
  std::string text(buffer.data(), end);
  text.erase(text.find_last_not_of('0') + 1);
  if (text.ends_with('.')) text.pop_back();
  return text;
}

std::string hexadecimal(TextColor color) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string name = "#";
  for (const std::uint8_t part : {color.red, color.green, color.blue})
    name += {kDigits[part >> 4], kDigits[part & 15]};
  return name;
}

bool isSafe(std::string_view link) {
  for (const std::string_view scheme : kSafeSchemes) {
    if (link.starts_with(scheme)) return true;
  }
  return false;
}

std::string_view nameOf(LineStyle style) {
  constexpr std::string_view kNames[] = {"", "solid", "solid", "double", "dotted", "dashed", "wavy"};
  return kNames[static_cast<std::size_t>(style)];
}

std::string cssOf(const TextAttributes& look) {
  std::string css;
  const auto add = [&css](const std::string& declaration) {
    css += css.empty() ? declaration : "; " + declaration;
  };
  if (!look.font.familyName.empty()) add("font-family: '" + look.font.familyName.str() + "'");
  if (look.font.pointSize > 0) add("font-size: " + number(look.font.pointSize) + "pt");
  add(look.font.isBold ? "font-weight: bold" : "font-weight: normal");
  if (look.font.isItalic) add("font-style: italic");
  if (look.capitals == TextCapitals::small) add("font-variant: small-caps");
  const bool isLink = isSafe(look.link);
  if (look.color) add("color: " + hexadecimal(*look.color));
  if (!look.color && isLink) add("color: windowtext");
  if (look.highlight) add("background-color: " + hexadecimal(*look.highlight));
  if (look.superscript != 0) add(look.superscript > 0 ? "vertical-align: super" : "vertical-align: sub");
  if (look.underline != LineStyle::none)
    add("text-decoration: underline " + std::string(nameOf(look.underline)));
  if (look.underline == LineStyle::none && isLink) add("text-decoration: none");
  return css;
}

std::string cssOf(const ParagraphStyle& style) {
  constexpr std::string_view kAlignmentNames[] = {"", "left", "center", "right", "justify"};
  std::string css = "white-space: pre-wrap; margin: 0";
  const auto add = [&css](const std::string& declaration) { css += "; " + declaration; };
  if (style.spacingBefore != 0) add("margin-top: " + number(style.spacingBefore) + "pt");
  if (style.spacingAfter != 0) add("margin-bottom: " + number(style.spacingAfter) + "pt");
  if (style.headIndent > 0) add("margin-left: " + number(style.headIndent) + "pt");
  const double indent = style.firstLineIndent - style.headIndent;
  if (indent != 0) add("text-indent: " + number(indent) + "pt");
  if (style.alignment != TextAlignment::natural)
    add("text-align: " + std::string(kAlignmentNames[static_cast<std::size_t>(style.alignment)]));
  return css;
}

// The attribute that lists of items with this marker take; absent for a marker that they have no form for.
struct ItemForm {
  std::string list;
  std::string attributes;
};
std::optional<ItemForm> formOf(std::string_view marker) {
  if (marker == "\xE2\x80\xA2") return ItemForm{"ul", " style=\"list-style-type: disc\""};
  if (marker == "\xE2\x97\xA6") return ItemForm{"ul", " style=\"list-style-type: circle\""};
  if (marker == "\xE2\x96\xAA") return ItemForm{"ul", " style=\"list-style-type: square\""};
  int value = 0;
  const auto [end, error] = std::from_chars(marker.data(), marker.data() + marker.size(), value);
  const bool isNumber =
      error == std::errc() &&
      std::string_view(end, static_cast<std::size_t>(marker.data() + marker.size() - end)) == ".";
  if (!isNumber || marker.starts_with('0') || marker.starts_with('-')) return std::nullopt;
  return ItemForm{"ol", " value=\"" + std::to_string(value) + "\""};
}

class HtmlWriter {
 public:
  explicit HtmlWriter(const NSAttributedString& text) : text_(text) {}

  String write() {
    html_.append("<!DOCTYPE html><html><head><meta charset=\"utf-8\"></head><body>");
    std::size_t begin = 0;
    for (const auto& paragraph : text_.paragraphs()) {
      enter(text_.cellOf(paragraph));
      writeParagraph(begin, paragraph);
      begin = paragraph.end;
    }
    closeLists(0);
    closeTables(0);
    html_.append("</body></html>");
    return html_.take();
  }

 private:
  // Opens and closes tables, rows and cells for the paragraph that comes next.
  void enter(const TableCell* cell) {
    const std::size_t depth = cell != nullptr ? cell->depth : 0;
    const bool isSameCell = cell != nullptr && !cells_.empty() && cells_.back() == *cell;
    if (isSameCell || (depth == 0 && cells_.empty())) return;
    closeLists(0);
    const bool isSameTable =
        cell != nullptr && cells_.size() >= depth && cells_[depth - 1].table == cell->table;
    closeTables(isSameTable ? depth : std::min(depth > 0 ? depth - 1 : 0, cells_.size()));
    if (cell == nullptr) return;
    if (isSameTable) {
      const bool isSameRow = cells_.back().row == cell->row;
      if (!(cells_.back() == *cell)) {
        html_.append(isSameRow ? "</td>" : "</td></tr><tr>");
        openCell(*cell);
        cells_.back() = *cell;
      }
      return;
    }
    while (cells_.size() + 1 < depth) openTable({});
    openTable(*cell);
  }

  void openTable(const TableCell& cell) {
    html_.append("<table border=\"1\"><tr>");
    openCell(cell);
    cells_.push_back(cell);
  }

  void openCell(const TableCell& cell) {
    html_.append("<td");
    if (cell.rowSpan > 1) html_.append(" rowspan=\"" + std::to_string(cell.rowSpan) + "\"");
    if (cell.columnSpan > 1) html_.append(" colspan=\"" + std::to_string(cell.columnSpan) + "\"");
    html_.append(">");
  }

  void closeTables(std::size_t depth) {
    while (cells_.size() > depth) {
      html_.append("</td></tr></table>");
      cells_.pop_back();
    }
  }

  void closeLists(std::size_t level) {
    while (lists_.size() > level) {
      html_.append("</" + lists_.back() + ">");
      lists_.pop_back();
    }
  }

  void openLists(const std::string& list, std::size_t level) {
    closeLists(level);
    if (!lists_.empty() && lists_.size() == level && lists_.back() != list) closeLists(level - 1);
    while (lists_.size() < level) {
      html_.append("<" + list + ">");
      lists_.push_back(list);
    }
  }

  void writeParagraph(std::size_t begin, const NSAttributedString::Paragraph& paragraph) {
    const std::size_t end = paragraph.end;
    const ParagraphStyle& style = text_.styleOf(paragraph);
    const std::string_view all = text_.string();
    const std::size_t separator =
        end > begin && (all[end - 1] == '\n' || (all[end - 1] == '\t' && paragraph.cell > 0)) ? 1 : 0;
    const std::string prefix = style.listMarker.str() + "\t";
    const auto form = style.listMarker.empty() || !all.substr(begin).starts_with(prefix)
                          ? std::nullopt
                          : formOf(style.listMarker);
    if (form) {
      openLists(form->list, std::max<std::size_t>(style.listLevel, 1));
      html_.append("<li" + form->attributes + "><div style=\"" + cssOf(ParagraphStyle()) + "\">");
      writeRuns(begin + prefix.size(), end - separator);
      return html_.append("</div></li>");
    }
    closeLists(0);
    const std::string tag = style.headingLevel > 0 ? "h" + std::to_string(style.headingLevel) : "p";
    html_.append("<" + tag + (style.direction == WritingDirection::rightToLeft ? " dir=\"rtl\"" : "") +
                 " style=\"" + markupEscaped(cssOf(style)) + "\">");
    writeRuns(begin, end - separator);
    // A block without content has no line.
    if (begin == end - separator) html_.append("<br>");
    html_.append("</" + tag + ">");
  }

  void writeRuns(std::size_t begin, std::size_t end) {
    while (run_ < text_.runs().size() && text_.runs()[run_].end <= begin) ++run_;
    for (std::size_t at = begin; at < end;) {
      const auto& run = text_.runs()[run_];
      const std::size_t stop = std::min<std::size_t>(run.end, end);
      writeRun(text_.string().view().substr(at, stop - at), text_.attributesOf(run));
      at = stop;
      if (run.end <= at && run_ + 1 < text_.runs().size()) ++run_;
    }
  }

  void writeRun(std::string_view text, const TextAttributes& look) {
    if (!look.attachment.empty()) return html_.append("[" + markupEscaped(look.attachment) + "]");
    const bool isLink = isSafe(look.link);
    if (isLink) html_.append("<a href=\"" + markupEscaped(look.link) + "\">");
    html_.append("<span style=\"" + markupEscaped(cssOf(look)) + "\">");
    if (look.strikethrough != LineStyle::none) html_.append("<s>");
    writeText(text);
    if (look.strikethrough != LineStyle::none) html_.append("</s>");
    html_.append(isLink ? "</span></a>" : "</span>");
  }

  void writeText(std::string_view text) {
    while (!text.empty()) {
      const std::size_t plain = std::min({text.find(kLineSeparator), text.find('\f'), text.size()});
      html_.append(markupEscaped(text.substr(0, plain)));
      text.remove_prefix(plain);
      if (text.empty()) return;
      html_.append("<br>");
      text.remove_prefix(text.front() == '\f' ? 1 : kLineSeparator.size());
    }
  }

  const NSAttributedString& text_;
  StringBuilder html_;
  std::size_t run_ = 0;
  std::vector<TableCell> cells_;    // That are open, the outermost first.
  std::vector<std::string> lists_;  // The elements of the lists that are open.
};

}  // namespace

String htmlFrom(const NSAttributedString& text) { return HtmlWriter(text).write(); }

}  // namespace tarnix
