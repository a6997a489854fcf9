#include "platform/appkit/rich_text/rtf/rtf_writer.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "platform/appkit/rich_text/rtf/rtf_list_writer.h"
#include "platform/appkit/rich_text/rtf/rtf_output.h"
#include "platform/appkit/rich_text/rtf/rtf_table_writer.h"
#include "platform/foundation/utf8.h"

namespace tarnix {
namespace {

// Lengths are written as whole twips within what the format holds.
int rounded(CGFloat value) {
  return std::isnan(value) ? 0 : static_cast<int>(std::lround(std::clamp(value, -31680.0, 31680.0)));
}
int twips(CGFloat points) { return rounded(points * 20); }

struct ColorOrder {
  bool operator()(const TextColor& a, const TextColor& b) const {
    return std::tie(a.red, a.green, a.blue) < std::tie(b.red, b.green, b.blue);
  }
};

// The fonts and colours of a text, counted from 1. What is left to the reader has no number.
class LookTables {
 public:
  explicit LookTables(const NSAttributedString& text) {
    for (const TextAttributes& attributes : text.attributes()) {
      const String& family = attributes.font.familyName;
      if (!family.empty()) fonts_.try_emplace(family.str(), static_cast<int>(fonts_.size()) + 1);
      for (const auto& color : {attributes.color, attributes.highlight}) {
        if (color) colors_.try_emplace(*color, static_cast<int>(colors_.size()) + 1);
      }
    }
  }

  int fontOf(const String& family) const { return fonts_.at(family.str()); }
  int colorOf(const TextColor& color) const { return colors_.at(color); }

  void write(RtfOutput& to) const {
    writeFonts(to);
    writeColors(to);
  }

 private:
  void writeFonts(RtfOutput& to) const {
    if (fonts_.empty()) return;
    to.raw("{\\fonttbl");
    for (const auto& [family, number] : fonts_) {
      to.open();
      to.word("f", number);
      to.raw("\\fnil\\fcharset0");
      std::string name = family;
      name.erase(std::remove(name.begin(), name.end(), ';'), name.end());
      to.text(name);
      to.raw(";}");
    }
    to.raw("}\n");
  }

  void writeColors(RtfOutput& to) const {
    if (colors_.empty()) return;
    std::vector<TextColor> inOrder(colors_.size());
    for (const auto& [color, number] : colors_) inOrder[static_cast<std::size_t>(number) - 1] = color;
    to.raw("{\\colortbl;");
    for (const TextColor& color : inOrder) {
      to.word("red", color.red);
      to.word("green", color.green);
      to.word("blue", color.blue);
      to.raw(";");
    }
    to.raw("}\n");
  }

  std::map<std::string, int> fonts_;
  std::map<TextColor, int, ColorOrder> colors_;
};

const char* underlineWord(LineStyle style) {
  switch (style) {
    case LineStyle::none:
      return nullptr;
    case LineStyle::single:
      return "ul";
    case LineStyle::thick:
      return "ulth";
    case LineStyle::twofold:
      return "uldb";
    case LineStyle::dotted:
      return "uld";
    case LineStyle::dashed:
      return "uldash";
    case LineStyle::wavy:
      return "ulwave";
  }
  return nullptr;
}

void writeLines(const TextAttributes& attributes, RtfOutput& to) {
  if (const char* const word = underlineWord(attributes.underline)) to.word(word);
  if (attributes.strikethrough == LineStyle::twofold) {
    to.word("striked", 1);
  } else if (attributes.strikethrough != LineStyle::none) {
    to.word("strike");
  }
}

void writeFont(const NSFont& font, const LookTables& tables, const char* associated, RtfOutput& to) {
  const std::string prefix = associated;
  if (!font.familyName.empty()) to.word(prefix + "f", tables.fontOf(font.familyName));
  if (font.pointSize > 0) to.word(prefix + "fs", std::max(1, rounded(font.pointSize * 2)));
  if (font.isBold) to.word(prefix + "b");
  if (font.isItalic) to.word(prefix + "i");
}

// Whether there is a script that others look up another font for: Hebrew, Arabic, those of India and beyond.
bool hasComplexScript(std::string_view text) {
  for (std::size_t at = asciiPrefix(text); at < text.size();) {
    const CodePoint next = codePointAt(text, at);
    if ((next.value >= 0x590 && next.value < 0x1100) || (next.value >= 0xFB1D && next.value < 0xFF00))
      return true;
    at += next.length;
  }
  return false;
}

void writeLook(const TextAttributes& attributes, const LookTables& tables, bool isComplex, RtfOutput& to) {
  to.word("plain");
  if (isComplex && attributes.font != NSFont()) {
    to.word("rtlch");
    writeFont(attributes.font, tables, "a", to);
    to.word("ltrch");
  }
  writeFont(attributes.font, tables, "", to);
  writeLines(attributes, to);
  if (attributes.capitals != TextCapitals::asWritten)
    to.word(attributes.capitals == TextCapitals::all ? "caps" : "scaps");
  if (attributes.superscript != 0) to.word(attributes.superscript > 0 ? "super" : "sub");
  if (attributes.color) to.word("cf", tables.colorOf(*attributes.color));
  if (!attributes.highlight) return;
  // \highlight holds sixteen colours only; some read the one word for any other, and some the other.
  to.word("chshdng", 0);
  to.word("chcbpat", tables.colorOf(*attributes.highlight));
  to.word("cb", tables.colorOf(*attributes.highlight));
}

const char* alignmentWord(TextAlignment alignment) {
  switch (alignment) {
    case TextAlignment::natural:
      return nullptr;
    case TextAlignment::left:
      return "ql";
    case TextAlignment::center:
      return "qc";
    case TextAlignment::right:
      return "qr";
    case TextAlignment::justified:
      return "qj";
  }
  return nullptr;
}

void writeLength(const char* word, CGFloat points, RtfOutput& to) {
  if (twips(points) != 0) to.word(word, twips(points));
}

// \li and \ri are sides of the paper, \lin and \rin those of the direction. Those who don't tell them apart
// take the last.
void writeIndents(const ParagraphStyle& style, RtfOutput& to) {
  if (style.direction == WritingDirection::rightToLeft) {
    to.word("li", twips(style.tailIndent));
    to.word("ri", twips(style.headIndent));
    to.word("lin", twips(style.headIndent));
    to.word("rin", twips(style.tailIndent));
  } else {
    writeLength("li", style.headIndent, to);
    writeLength("ri", style.tailIndent, to);
  }
  writeLength("fi", style.firstLineIndent - style.headIndent, to);
}

void writeLineHeight(const ParagraphStyle& style, RtfOutput& to) {
  const bool isFactor = style.lineHeightRule == LineHeightRule::multiple;
  const int height = isFactor ? rounded(style.lineHeight * 240) : twips(style.lineHeight);
  if (height <= 0 || (isFactor && height == 240)) return;
  to.word("sl", style.lineHeightRule == LineHeightRule::exactly ? -height : height);
  to.word("slmult", isFactor ? 1 : 0);
}

void writeTabStops(const ParagraphStyle& style, RtfOutput& to) {
  for (const TabStop& stop : style.tabStops) {
    if (stop.alignment == TextAlignment::right) to.word("tqr");
    if (stop.alignment == TextAlignment::center) to.word("tqc");
    to.word("tx", twips(stop.position));
  }
}

void writeStyle(const ParagraphStyle& style, RtfOutput& to) {
  if (style.direction == WritingDirection::rightToLeft) to.word("rtlpar");
  if (style.direction == WritingDirection::leftToRight) to.word("ltrpar");
  if (const char* const word = alignmentWord(style.alignment)) to.word(word);
  writeIndents(style, to);
  writeLength("sb", style.spacingBefore, to);
  writeLength("sa", style.spacingAfter, to);
  writeLineHeight(style, to);
  writeTabStops(style, to);
  if (style.headingLevel > 0) to.word("outlinelevel", style.headingLevel - 1);
}

// In the text of a field, a backslash begins a switch and a quotation mark ends the target.
std::string quoted(std::string_view target) {
  std::string text = "\"";
  for (const char c : target) {
    if (static_cast<unsigned char>(c) < 0x20) continue;
    if (c == '\\' || c == '"') text += '\\';
    text += c;
  }
  return text + '"';
}

class Writer {
 public:
  explicit Writer(const NSAttributedString& text)
      : text_(text),
        look_(text),
        lists_(text),
        tables_(text, out_),
        isComplex_(hasComplexScript(text.string())) {}

  String write() {
    // A size that isn't told is the system's, which others take for 12 points.
    out_.raw("{\\rtf1\\ansi\\ansicpg1252\\uc1\\tarnixsize0\n");
    look_.write(out_);
    lists_.write(out_);
    const auto paragraphs = text_.paragraphs();
    for (std::size_t i = 0; i < paragraphs.size(); ++i) {
      const std::uint32_t begin = i == 0 ? 0 : paragraphs[i - 1].end;
      writeParagraph(i, begin, paragraphs[i].end);
    }
    tables_.finish();
    // The last \par of a document is nothing but its end.
    if (text_.string().view().ends_with('\n')) out_.raw("\\pard\\par");
    out_.close();
    return out_.written();
  }

 private:
  static constexpr std::uint32_t kNone = ~std::uint32_t{0};

  void writeParagraph(std::size_t index, std::uint32_t begin, std::uint32_t end) {
    const ParagraphStyle& style = text_.styleOf(text_.paragraphs()[index]);
    const std::string_view all = text_.string();
    const char last = all[end - 1];
    const bool isEnded = last == '\n' || (text_.paragraphs()[index].cell > 0 && last == '\t');
    tables_.begin(index);
    writeProperties(index, style);
    begin = writeMarker(begin, end, style);
    const std::uint32_t textEnd = isEnded ? end - 1 : end;
    writeText(begin, std::max(begin, textEnd));
    if (isEnded) switchTo(runAt(end - 1).attributes);
    const bool isCellEnd = tables_.endParagraph(index);
    const bool isParagraphEnd = isEnded && !isCellEnd;
    if (isParagraphEnd) out_.word("par");
    endSuperscript();
    if (isParagraphEnd) out_.lineBreak();
  }

  void writeProperties(std::size_t index, const ParagraphStyle& style) {
    const bool isItem = lists_.listOf(index) != 0;
    out_.word("pard");
    tables_.writeProperties();
    writeStyle(style, out_);
    if (style.listLevel == 0) return;
    // A further paragraph of an item has no number, for which there is no word that others would know.
    if (!isItem) return out_.word("tarnixitem", style.listLevel);
    out_.word("ls", lists_.listOf(index));
    out_.word("ilvl", style.listLevel - 1);
  }

  // The marker is for those who don't count themselves. Where the rest begins.
  std::uint32_t writeMarker(std::uint32_t begin, std::uint32_t end, const ParagraphStyle& style) {
    if (!rtfHasMarker(std::string_view(text_.string()).substr(begin, end - begin), style)) return begin;
    const auto markerEnd = static_cast<std::uint32_t>(begin + style.listMarker.size() + 1);
    switchTo(runAt(begin).attributes);
    const std::uint32_t before = current_;
    out_.raw("{\\listtext");
    writeText(begin, markerEnd);
    out_.close();
    current_ = before;
    return markerEnd;
  }

  const NSAttributedString::Run& runAt(std::uint32_t position) {
    while (text_.runs()[run_].end <= position) ++run_;
    return text_.runs()[run_];
  }

  void writeText(std::uint32_t begin, std::uint32_t end) {
    while (begin < end) {
      const auto& run = runAt(begin);
      const std::uint32_t stop = std::min(end, run.end);
      writeRun(std::string_view(text_.string()).substr(begin, stop - begin), run.attributes);
      begin = stop;
    }
  }

  void switchTo(std::uint32_t attributes) {
    if (current_ == attributes) return;
    endSuperscript();
    writeLook(text_.attributes()[attributes], look_, isComplex_, out_);
    current_ = attributes;
  }

  // Some readers hold back what is raised or lowered until its end is told.
  void endSuperscript() {
    if (current_ == kNone || text_.attributes()[current_].superscript == 0) return;
    out_.word("nosupersub");
    current_ = kNone;
  }

  void writeRun(std::string_view piece, std::uint32_t index) {
    const TextAttributes& attributes = text_.attributes()[index];
    switchTo(index);
    if (attributes.link.empty()) return writeCharacters(piece, attributes);
    const bool isLocal = attributes.link.hasPrefix("#");
    const std::string_view target = attributes.link;
    out_.raw("{\\field{\\*\\fldinst");
    out_.text(isLocal ? "HYPERLINK \\l " + quoted(target.substr(1)) : "HYPERLINK " + quoted(target));
    out_.raw("}{\\fldrslt");
    writeCharacters(piece, attributes);
    out_.raw("}}");
  }

  // An attachment's name stands before the character in a destination that others leave out.
  void writeCharacters(std::string_view piece, const TextAttributes& attributes) {
    if (attributes.attachment.empty()) return out_.text(piece);
    while (!piece.empty()) {
      const std::size_t at = std::min(piece.find(kAttachment), piece.size());
      out_.text(piece.substr(0, at));
      piece.remove_prefix(at);
      if (piece.empty()) return;
      out_.open();
      out_.hiddenDestination("tarnixattachment");
      out_.text(attributes.attachment);
      out_.close();
      out_.text(kAttachment);
      piece.remove_prefix(kAttachment.size());
    }
  }

  const NSAttributedString& text_;
  RtfOutput out_;
  LookTables look_;
  RtfListWriter lists_;
  RtfTableWriter tables_;
  std::size_t run_ = 0;
  bool isComplex_;
  std::uint32_t current_ = kNone;
};

}  // namespace

String rtfFrom(const NSAttributedString& text) { return Writer(text).write(); }

}  // namespace tarnix
