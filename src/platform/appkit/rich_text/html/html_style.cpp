#include "platform/appkit/rich_text/html/html_style.h"

#include <algorithm>
#include <charconv>
#include <unordered_map>
#include <unordered_set>

#include "platform/foundation/utf8.h"

namespace tarnix {
namespace {

using Display = HtmlStyle::Display;
using Marker = HtmlStyle::Marker;
using Names = std::unordered_set<std::string_view>;

constexpr double kListIndent = 30;
constexpr double kQuoteIndent = 30;

const Names kBlocks = {
    "address", "article", "aside",     "blockquote", "body",   "caption",  "center",     "dd",     "details",
    "dialog",  "dir",     "div",       "dl",         "dt",     "fieldset", "figcaption", "figure", "footer",
    "form",    "h1",      "h2",        "h3",         "h4",     "h5",       "h6",         "header", "hgroup",
    "hr",      "html",    "legend",    "listing",    "main",   "menu",     "nav",        "ol",     "optgroup",
    "option",  "p",       "plaintext", "pre",        "search", "section",  "summary",    "ul",     "xmp"};
const Names kUnseen = {
    "head",  "script", "style",    "template",   "noscript",       "title",    "meta",    "link",
    "base",  "param",  "source",   "track",      "area",           "datalist", "iframe",  "object",
    "embed", "audio",  "video",    "canvas",     "defs",           "symbol",   "noembed", "noframes",
    "rp",    "desc",   "metadata", "annotation", "annotation-xml", "progress", "meter"};
const Names kBold = {"b", "strong", "th"};
const Names kItalic = {"i", "em", "cite", "var", "dfn", "address"};
const Names kMonospaced = {"code", "kbd", "samp", "tt", "pre", "listing", "xmp", "plaintext"};

const std::unordered_map<std::string_view, Display> kDisplays = {{"none", Display::none},
                                                                 {"inline", Display::inlined},
                                                                 {"inline-block", Display::inlined},
                                                                 {"contents", Display::inlined},
                                                                 {"inline-flex", Display::inlined},
                                                                 {"block", Display::block},
                                                                 {"flex", Display::block},
                                                                 {"grid", Display::block},
                                                                 {"flow-root", Display::block},
                                                                 {"list-item", Display::listItem},
                                                                 {"table", Display::table},
                                                                 {"table-row", Display::tableRow},
                                                                 {"table-cell", Display::tableCell},
                                                                 {"table-caption", Display::block}};
const std::unordered_map<std::string_view, Marker> kMarkers = {{"none", Marker::none},
                                                               {"disc", Marker::disc},
                                                               {"circle", Marker::circle},
                                                               {"square", Marker::square},
                                                               {"decimal", Marker::decimal},
                                                               {"decimal-leading-zero", Marker::decimal},
                                                               {"lower-alpha", Marker::lowerAlpha},
                                                               {"lower-latin", Marker::lowerAlpha},
                                                               {"upper-alpha", Marker::upperAlpha},
                                                               {"upper-latin", Marker::upperAlpha},
                                                               {"lower-roman", Marker::lowerRoman},
                                                               {"upper-roman", Marker::upperRoman},
                                                               {"1", Marker::decimal}};
const std::unordered_map<std::string_view, TextAlignment> kAlignments = {
    {"left", TextAlignment::left},
    {"right", TextAlignment::right},
    {"center", TextAlignment::center},
    {"middle", TextAlignment::center},
    {"justify", TextAlignment::justified},
    {"start", TextAlignment::natural},
    {"-webkit-center", TextAlignment::center},
    {"-webkit-right", TextAlignment::right}};
// The sizes of the element `font`, from 1 to 7.
constexpr double kFontSizes[] = {7.5, 9.75, 12, 13.5, 18, 24, 36};

template <typename Value>
void setFrom(const std::unordered_map<std::string_view, Value>& values, std::string_view name, Value& to) {
  if (const auto found = values.find(name); found != values.end()) to = found->second;
}

bool isBlack(TextColor color) { return color == TextColor{}; }

// What is black without anybody's choice is the reader's own colour.
void setColor(const std::optional<css::ColorValue>& value, std::optional<TextColor>& to) {
  if (!value) return;
  to = value->isNone || isBlack(value->color) ? std::nullopt : std::optional(value->color);
}

void setHighlight(const std::optional<css::ColorValue>& value, std::optional<TextColor>& to) {
  constexpr TextColor kWhite{255, 255, 255};
  if (value) to = value->isNone || value->color == kWhite ? std::nullopt : std::optional(value->color);
}

int numberFrom(std::string_view text) {
  int number = 0;
  if (text.starts_with('+')) text.remove_prefix(1);
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

double sizeOfFontElement(std::string_view value) {
  const bool isRelative = value.starts_with('+') || value.starts_with('-');
  const int size = numberFrom(value) + (isRelative ? 3 : 0);
  return kFontSizes[static_cast<std::size_t>(std::clamp(size, 1, 7) - 1)];
}

}  // namespace

HtmlStyle HtmlStyle::inherited() const {
  HtmlStyle style = *this;
  style.display = Display::inlined;
  style.paragraph.spacingBefore = style.paragraph.spacingAfter = 0;
  style.paragraph.listMarker = String();
  return style;
}

void HtmlStyle::applyKind(std::string_view tag) {
  NSFont& font = look.font;
  if (kBlocks.contains(tag)) display = Display::block;
  if (kUnseen.contains(tag)) display = Display::none;
  if (tag == "li") display = Display::listItem;
  if (tag == "table") display = Display::table;
  if (tag == "tr") display = Display::tableRow;
  if (tag == "td" || tag == "th") display = Display::tableCell;
  if (kBold.contains(tag)) font.isBold = true;
  if (kItalic.contains(tag)) font.isItalic = true;
  if (kMonospaced.contains(tag)) font.familyName = "monospace";
  if (tag == "u" || tag == "ins") look.underline = LineStyle::single;
  if (tag == "s" || tag == "strike" || tag == "del") look.strikethrough = LineStyle::single;
  if (tag == "sup") look.superscript = 1;
  if (tag == "sub") look.superscript = -1;
  if (tag == "small") font.pointSize /= 1.2;
  if (tag == "big") font.pointSize *= 1.2;
  if (tag == "mark") look.highlight = TextColor{255, 255, 0};
  if (tag == "textarea") whiteSpace = WhiteSpace::preWrap;
  if (tag == "pre" || tag == "listing" || tag == "xmp" || tag == "plaintext") whiteSpace = WhiteSpace::pre;
  if (tag == "th" || tag == "center" || tag == "caption") paragraph.alignment = TextAlignment::center;
  if (tag == "blockquote" || tag == "dd" || tag == "figure") {
    paragraph.headIndent += kQuoteIndent;
    paragraph.firstLineIndent += kQuoteIndent;
  }
  if (tag == "ul" || tag == "ol" || tag == "menu" || tag == "dir") {
    paragraph.headIndent += kListIndent;
    paragraph.firstLineIndent += kListIndent;
    paragraph.listLevel = static_cast<std::uint8_t>(std::min(paragraph.listLevel + 1, 9));
    constexpr Marker kByLevel[] = {Marker::disc, Marker::circle, Marker::square};
    marker = tag == "ol" ? Marker::decimal : kByLevel[std::min(paragraph.listLevel - 1, 2)];
  }
  if (tag.size() == 2 && tag[0] == 'h' && tag[1] >= '1' && tag[1] <= '6') {
    constexpr double kFactors[] = {2, 1.5, 1.17, 1, 0.83, 0.67};
    paragraph.headingLevel = static_cast<std::uint8_t>(tag[1] - '0');
    font.isBold = true;
    font.pointSize *= kFactors[paragraph.headingLevel - 1];
    paragraph.spacingBefore = paragraph.spacingAfter = font.pointSize / 2;
  }
  if (tag == "p" || tag == "blockquote") paragraph.spacingAfter = font.pointSize / 2;
}

void HtmlStyle::applyAttributes(std::string_view tag,
                                const std::function<std::string_view(const char*)>& attribute) {
  if (tag == "font" || tag == "basefont") {
    if (const auto face = attribute("face"); !face.empty()) look.font.familyName = css::familyFrom(face);
    if (const auto size = attribute("size"); !size.empty()) look.font.pointSize = sizeOfFontElement(size);
    if (const auto color = attribute("color"); !color.empty()) {
      auto value = css::colorFrom(css::lowercase(color));
      setColor(value ? value : css::colorFrom("#" + css::lowercase(color)), look.color);
    }
  }
  if (tag == "a") {
    if (const auto target = attribute("href"); !target.empty()) {
      look.link = String(wellFormedUtf8(css::trimmed(target)));
      look.underline = LineStyle::single;
      look.color = TextColor{0, 0, 238};
    }
  }
  if (tag != "img" && tag != "table")
    setFrom(kAlignments, css::lowercase(attribute("align")), paragraph.alignment);
  if (tag == "body" || tag == "td" || tag == "th" || tag == "tr" || tag == "table")
    setHighlight(css::colorFrom(css::lowercase(attribute("bgcolor"))), look.highlight);
  if (tag == "body") look.highlight.reset();
  const std::string direction = css::lowercase(attribute("dir"));
  if (direction == "rtl") paragraph.direction = WritingDirection::rightToLeft;
  if (direction == "ltr") paragraph.direction = WritingDirection::leftToRight;
  if (direction == "auto") paragraph.direction = WritingDirection::natural;
  if (tag == "ul" || tag == "ol" || tag == "li") {
    const std::string_view type = attribute("type");
    constexpr std::pair<std::string_view, Marker> kLetters[] = {{"a", Marker::lowerAlpha},
                                                                {"A", Marker::upperAlpha},
                                                                {"i", Marker::lowerRoman},
                                                                {"I", Marker::upperRoman}};
    for (const auto& [letter, kind] : kLetters) {
      if (type == letter) marker = kind;
    }
    setFrom(kMarkers, css::lowercase(type), marker);
  }
}

void HtmlStyle::apply(const css::Declaration& declaration, double parentSize) {
  if (declaration.name.starts_with("font")) return applyFont(declaration, parentSize);
  applyText(declaration);
  applyBox(declaration);
}

void HtmlStyle::applyFont(const css::Declaration& declaration, double parentSize) {
  NSFont& font = look.font;
  const std::string_view value = declaration.value;
  const auto setWeight = [&](std::string_view weight) {
    if (weight == "bold" || weight == "bolder" || numberFrom(weight) >= 600) font.isBold = true;
    const bool isLight =
        weight == "normal" || weight == "lighter" || (numberFrom(weight) > 0 && numberFrom(weight) < 600);
    if (isLight) font.isBold = false;
  };
  const auto setStyle = [&](std::string_view style) {
    if (style.starts_with("italic") || style.starts_with("oblique")) font.isItalic = true;
    if (style == "normal") font.isItalic = false;
  };
  const std::string& name = declaration.name;
  if (name == "font-weight") setWeight(value);
  if (name == "font-style") setStyle(value);
  if (name == "font-family") font.familyName = css::familyFrom(value);
  if (name == "font-variant" || name == "font-variant-caps")
    look.capitals =
        value.find("small-caps") != std::string_view::npos ? TextCapitals::small : TextCapitals::asWritten;
  if (name == "font-size") font.pointSize = css::fontSizeFrom(value, parentSize).value_or(font.pointSize);
  if (name != "font") return;
  // Styles and weights in any order, the size, perhaps with a line height behind a slash, and the families.
  const auto words = css::wordsOf(value);
  for (std::size_t i = 0; i < words.size(); ++i) {
    const std::string word = css::lowercase(words[i].substr(0, words[i].find('/')));
    const auto size =
        numberFrom(word) >= 100 && word.size() == 3 ? std::nullopt : css::fontSizeFrom(word, parentSize);
    if (!size) {
      setWeight(word);
      setStyle(word);
      continue;
    }
    font.pointSize = *size;
    if (i + 1 < words.size())
      font.familyName =
          css::familyFrom(value.substr(static_cast<std::size_t>(words[i + 1].data() - value.data())));
    return;
  }
}

void HtmlStyle::setDecoration(std::string_view value) {
  const auto has = [&](std::string_view word) { return value.find(word) != std::string_view::npos; };
  const auto lineOf = [&] {
    if (has("double")) return LineStyle::twofold;
    if (has("dotted")) return LineStyle::dotted;
    if (has("dashed")) return LineStyle::dashed;
    return has("wavy") ? LineStyle::wavy : LineStyle::single;
  };
  if (has("underline")) look.underline = lineOf();
  if (has("line-through")) look.strikethrough = has("double") ? LineStyle::twofold : LineStyle::single;
  if (value.starts_with("none")) look.underline = look.strikethrough = LineStyle::none;
}

void HtmlStyle::setMarker(std::string_view value) {
  for (const std::string_view word : css::wordsOf(value)) setFrom(kMarkers, word, marker);
}

void HtmlStyle::applyText(const css::Declaration& declaration) {
  const std::string& name = declaration.name;
  const std::string_view value = declaration.value;
  if (name == "color") {
    if (value == "windowtext" || value == "initial") look.color.reset();
    setColor(css::colorFrom(value), look.color);
  }
  if (name == "background-color") setHighlight(css::colorFrom(value), look.highlight);
  if (name == "background" || name == "mso-highlight") {
    for (const std::string_view word : css::wordsOf(value))
      setHighlight(css::colorFrom(word), look.highlight);
  }
  if (name == "text-decoration" || name == "text-decoration-line") setDecoration(value);
  if (name == "text-decoration-style" && look.underline != LineStyle::none)
    setDecoration("underline " + std::string(value));
  if (name == "vertical-align") {
    if (value == "super") look.superscript = 1;
    if (value == "sub") look.superscript = -1;
    if (value == "baseline") look.superscript = 0;
  }
  if (name == "text-transform") {
    // Other changes of letters have no look that would keep the text as it is.
    static const std::unordered_map<std::string_view, TextCapitals> kTransforms = {
        {"uppercase", TextCapitals::all},
        {"none", TextCapitals::asWritten},
        {"lowercase", TextCapitals::asWritten},
        {"capitalize", TextCapitals::asWritten}};
    setFrom(kTransforms, value, look.capitals);
  }
  if (name == "white-space") {
    static const std::unordered_map<std::string_view, WhiteSpace> kWhiteSpaces = {
        {"normal", WhiteSpace::normal},    {"pre", WhiteSpace::pre},
        {"pre-wrap", WhiteSpace::preWrap}, {"break-spaces", WhiteSpace::preWrap},
        {"pre-line", WhiteSpace::preLine}, {"nowrap", WhiteSpace::nowrap}};
    setFrom(kWhiteSpaces, value, whiteSpace);
  }
  if (name == "direction" && value == "rtl") paragraph.direction = WritingDirection::rightToLeft;
  if (name == "direction" && value == "ltr") paragraph.direction = WritingDirection::leftToRight;
}

void HtmlStyle::applyBox(const css::Declaration& declaration) {
  const std::string& name = declaration.name;
  const std::string_view value = declaration.value;
  const auto length = [&] { return css::lengthFrom(value, look.font.pointSize); };
  if (name == "display") setFrom(kDisplays, value, display);
  if (name == "visibility") isHidden = value == "hidden" || value == "collapse";
  if (name == "mso-hide" && value == "all") display = Display::none;
  if (name == "text-align") setFrom(kAlignments, value, paragraph.alignment);
  if (name == "list-style-type" || name == "list-style") setMarker(value);
  if (name == "text-indent") {
    if (const auto indent = length()) paragraph.firstLineIndent = paragraph.headIndent + *indent;
  }
  if (name == "margin-left") {
    if (const auto margin = length(); margin && display == Display::block && paragraph.listLevel == 0) {
      const double change = std::max(*margin, 0.0);
      paragraph.headIndent += change;
      paragraph.firstLineIndent += change;
    }
  }
  if (name == "margin-top")
    paragraph.spacingBefore = std::max(length().value_or(paragraph.spacingBefore), 0.0);
  if (name == "margin-bottom")
    paragraph.spacingAfter = std::max(length().value_or(paragraph.spacingAfter), 0.0);
  if (name == "line-height" && value.ends_with('%'))
    paragraph.lineHeight = std::clamp(css::lengthFrom(value, 1).value_or(1), 0.5, 4.0);
}

}  // namespace tarnix
