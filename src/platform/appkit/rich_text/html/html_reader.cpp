#include "platform/appkit/rich_text/html/html_reader.h"

#include <gumbo.h>

#include <algorithm>
#include <charconv>
#include <memory>
#include <optional>
#include <string>

#include "platform/appkit/rich_text/html/html_encoding.h"
#include "platform/appkit/rich_text/html/html_flow.h"
#include "platform/appkit/rich_text/html/html_nesting.h"
#include "platform/appkit/rich_text/html/html_style.h"
#include "platform/appkit/rich_text/html/style_sheet.h"
#include "platform/appkit/rich_text/text/numeral.h"
#include "platform/foundation/utf8.h"

namespace tarnix {
namespace {

using Display = HtmlStyle::Display;
using Marker = HtmlStyle::Marker;

constexpr std::size_t kMostBytes = std::size_t{4} << 20;
// The tree is not deeper than this where the nesting of tags was bounded.
constexpr int kDeepestNode = 2000;

std::string_view nameOf(const GumboNode& node) {
  const GumboElement& element = node.v.element;
  if (element.tag != GUMBO_TAG_UNKNOWN) return gumbo_normalized_tagname(element.tag);
  GumboStringPiece tag = element.original_tag;
  if (tag.data == nullptr) return {};
  gumbo_tag_from_original_text(&tag);
  return {tag.data, tag.length};
}

std::string_view attributeOf(const GumboNode& node, const char* name) {
  const GumboAttribute* const attribute = gumbo_get_attribute(&node.v.element.attributes, name);
  return attribute == nullptr ? std::string_view() : std::string_view(attribute->value);
}

bool hasAttribute(const GumboNode& node, const char* name) {
  return gumbo_get_attribute(&node.v.element.attributes, name) != nullptr;
}

std::optional<int> numberOf(const GumboNode& node, const char* name) {
  const std::string_view text = css::trimmed(attributeOf(node, name));
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end != text.data() ? std::optional(number) : std::nullopt;
}

std::string textOf(Marker marker, int number) {
  switch (marker) {
    case Marker::none:
      return {};
    case Marker::disc:
      return "\xE2\x80\xA2";
    case Marker::circle:
      return "\xE2\x97\xA6";
    case Marker::square:
      return "\xE2\x96\xAA";
    case Marker::decimal:
      return std::to_string(number) + ".";
    case Marker::upperRoman:
      return numeral(number, 1) + ".";
    case Marker::lowerRoman:
      return numeral(number, 2) + ".";
    case Marker::upperAlpha:
      return numeral(number, 3) + ".";
    case Marker::lowerAlpha:
      return numeral(number, 4) + ".";
  }
  return {};
}

// What a field of a form shows in a line; empty for one that shows no text of its own.
std::string_view valueOf(const GumboNode& input) {
  static constexpr std::string_view kKinds[] = {"",       "text", "search", "email",  "url",    "tel",
                                                "number", "date", "time",   "submit", "button", "reset"};
  const bool isShown =
      std::ranges::find(kKinds, css::lowercase(attributeOf(input, "type"))) != std::end(kKinds);
  return isShown ? attributeOf(input, "value") : std::string_view();
}

// A picture that only counts readers or holds a place.
bool isTiny(const GumboNode& node) {
  return numberOf(node, "width").value_or(2) <= 1 || numberOf(node, "height").value_or(2) <= 1;
}

class Walk {
 public:
  NSAttributedString run(const GumboNode& root, bool isFragment) {
    isWithin_ = !isFragment;
    findStyleSheets(root, 0);
    HtmlStyle style;
    style.look.font.pointSize = 12;
    walk(root, style, nullptr, 0);
    return hasText_ ? flow_.take() : NSAttributedString();
  }

 private:
  struct List {
    int next = 1;
    int step = 1;
  };

  void findStyleSheets(const GumboNode& node, int depth) {
    if (node.type != GUMBO_NODE_ELEMENT || depth > kDeepestNode) return;
    const GumboVector& children = node.v.element.children;
    for (unsigned i = 0; i < children.length; ++i) {
      const auto& child = *static_cast<const GumboNode*>(children.data[i]);
      const bool isSheet = node.v.element.tag == GUMBO_TAG_STYLE && child.type == GUMBO_NODE_TEXT;
      if (isSheet) sheet_.add(child.v.text.text);
      findStyleSheets(child, depth + 1);
    }
  }

  void walk(const GumboNode& node, const HtmlStyle& around, const css::ElementNames* parent, int depth) {
    if (depth > kDeepestNode || flow_.isFull()) return;
    switch (node.type) {
      case GUMBO_NODE_TEXT:
      case GUMBO_NODE_WHITESPACE:
      case GUMBO_NODE_CDATA:
        // References to characters beyond all limits come out of the parser broken.
        if (isWithin_) addText(node.v.text.text, around);
        return;
      case GUMBO_NODE_COMMENT:
        return readComment(css::trimmed(node.v.text.text));
      case GUMBO_NODE_ELEMENT:
        return walkElement(node, around, parent, depth);
      default:
        return;
    }
  }

  void addText(std::string_view text, const HtmlStyle& style) {
    hasText_ |= !css::trimmed(text).empty();
    flow_.addText(wellFormedUtf8(text), style);
  }

  // What lies between these marks was copied; the rest is there for its styles.
  void readComment(std::string_view text) {
    if (text == "StartFragment") isWithin_ = true;
    if (text == "EndFragment") isWithin_ = false;
  }

  HtmlStyle styleOf(const GumboNode& node, const HtmlStyle& around, const css::ElementNames& names) {
    HtmlStyle style = around.inherited();
    style.applyKind(names.tag);
    style.applyAttributes(names.tag, [&](const char* name) { return attributeOf(node, name); });
    const double parentSize = around.look.font.pointSize;
    const auto ofSheet = sheet_.declarationsFor(names);
    const auto ofElement = css::declarationsIn(attributeOf(node, "style"));
    for (const bool isImportant : {false, true}) {
      for (const auto* each : ofSheet) {
        if (each->isImportant == isImportant) style.apply(*each, parentSize);
      }
      for (const auto& each : ofElement) {
        if (each.isImportant == isImportant) style.apply(each, parentSize);
      }
    }
    if (hasAttribute(node, "hidden")) style.display = Display::none;
    return style;
  }

  void walkElement(const GumboNode& node, const HtmlStyle& around, const css::ElementNames* parent,
                   int depth) {
    css::ElementNames names{nameOf(node), attributeOf(node, "id"), css::wordsOf(attributeOf(node, "class")),
                            parent};
    const std::string lowerName = css::lowercase(names.tag);
    names.tag = lowerName;
    HtmlStyle style = styleOf(node, around, names);
    if (style.display == Display::none) return walkUnseen(node, depth);
    if (names.tag == "caption" && !isCaption_) return;
    if (names.tag == "br" || names.tag == "img" || names.tag == "input") return addSingle(node, style, names);
    if (names.tag == "select") return walkChoice(node, style, names, depth);
    if (names.tag == "ul" || names.tag == "ol" || names.tag == "menu" || names.tag == "dir")
      return walkList(node, style, names, depth);
    switch (style.display) {
      case Display::block:
        return walkBlock(node, style, names, depth);
      case Display::listItem:
        return walkItem(node, style, names, depth);
      case Display::table:
        return walkTable(node, style, names, depth);
      case Display::tableRow:
        return walkRow(node, style, names, depth);
      case Display::tableCell:
        return walkCell(node, style, names, depth);
      default:
        return walkInline(node, style, names, depth);
    }
  }

  void addSingle(const GumboNode& node, const HtmlStyle& style, const css::ElementNames& names) {
    if (!isWithin_) return;
    if (names.tag == "br") return flow_.addLineBreak(style);
    if (names.tag == "input") return addText(valueOf(node), style);
    addPicture(node, style);
  }

  // Of its options the chosen one is on show, or the first.
  void walkChoice(const GumboNode& node, const HtmlStyle& style, const css::ElementNames& names, int depth) {
    const GumboNode* chosen = nullptr;
    const GumboVector& children = node.v.element.children;
    for (unsigned i = 0; i < children.length; ++i) {
      const auto& child = *static_cast<const GumboNode*>(children.data[i]);
      if (child.type != GUMBO_NODE_ELEMENT || child.v.element.tag != GUMBO_TAG_OPTION) continue;
      if (chosen == nullptr || hasAttribute(child, "selected")) chosen = &child;
    }
    if (chosen != nullptr) walkChildren(*chosen, style, names, depth);
  }

  void walkChildren(const GumboNode& node, const HtmlStyle& style, const css::ElementNames& names,
                    int depth) {
    const GumboVector& children = node.v.element.children;
    for (unsigned i = 0; i < children.length; ++i)
      walk(*static_cast<const GumboNode*>(children.data[i]), style, &names, depth + 1);
  }

  // A mark of the fragment may stand anywhere.
  void walkUnseen(const GumboNode& node, int depth) {
    if (depth > kDeepestNode) return;
    if (node.type == GUMBO_NODE_COMMENT) return readComment(css::trimmed(node.v.text.text));
    if (node.type != GUMBO_NODE_ELEMENT) return;
    const GumboVector& children = node.v.element.children;
    for (unsigned i = 0; i < children.length; ++i)
      walkUnseen(*static_cast<const GumboNode*>(children.data[i]), depth + 1);
  }

  void walkInline(const GumboNode& node, const HtmlStyle& style, const css::ElementNames& names, int depth) {
    const bool isQuote = names.tag == "q" && isWithin_;
    if (isQuote) flow_.addText("\xE2\x80\x9C", style);
    walkChildren(node, style, names, depth);
    if (isQuote) flow_.addText("\xE2\x80\x9D", style);
  }

  void walkBlock(const GumboNode& node, const HtmlStyle& style, const css::ElementNames& names, int depth) {
    flow_.breakBlock();
    walkChildren(node, style, names, depth);
    flow_.breakBlock();
  }

  void walkList(const GumboNode& node, const HtmlStyle& style, const css::ElementNames& names, int depth) {
    List list;
    const bool isReversed = hasAttribute(node, "reversed");
    list.next = numberOf(node, "start").value_or(isReversed ? itemCount(node) : 1);
    if (isReversed) list.step = -1;
    const auto former = list_;
    list_ = list;
    walkBlock(node, style, names, depth);
    list_ = former;
  }

  static int itemCount(const GumboNode& list) {
    const GumboVector& children = list.v.element.children;
    int count = 0;
    for (unsigned i = 0; i < children.length; ++i) {
      const auto& child = *static_cast<const GumboNode*>(children.data[i]);
      if (child.type == GUMBO_NODE_ELEMENT && child.v.element.tag == GUMBO_TAG_LI) ++count;
    }
    return count;
  }

  void walkItem(const GumboNode& node, const HtmlStyle& style, const css::ElementNames& names, int depth) {
    List& list = list_;
    if (const auto value = numberOf(node, "value")) list.next = *value;
    const int number = list.next;
    list.next += list.step;
    HtmlStyle item = style;
    if (item.paragraph.listLevel == 0) item.paragraph.listLevel = 1;
    flow_.breakBlock();
    if (isWithin_) flow_.beginItem(textOf(item.marker, number));
    walkChildren(node, item, names, depth);
    flow_.endItem();
    flow_.breakBlock();
  }

  void walkTable(const GumboNode& node, const HtmlStyle& style, const css::ElementNames& names, int depth) {
    if (!isWithin_ && !hasFragment(node, 0)) return walkChildren(node, style, names, depth);
    HtmlStyle plain = style;
    plain.whiteSpace = HtmlStyle::WhiteSpace::normal;
    walkCaption(node, plain, names, depth);
    flow_.beginTable();
    walkChildren(node, plain, names, depth);
    flow_.endTable();
  }

  static bool hasFragment(const GumboNode& node, int depth) {
    if (depth > kDeepestNode) return false;
    if (node.type == GUMBO_NODE_COMMENT) return css::trimmed(node.v.text.text) == "StartFragment";
    if (node.type != GUMBO_NODE_ELEMENT) return false;
    const GumboVector& children = node.v.element.children;
    for (unsigned i = 0; i < children.length; ++i) {
      if (hasFragment(*static_cast<const GumboNode*>(children.data[i]), depth + 1)) return true;
    }
    return false;
  }

  void walkCaption(const GumboNode& table, const HtmlStyle& style, const css::ElementNames& names,
                   int depth) {
    const GumboVector& children = table.v.element.children;
    for (unsigned i = 0; i < children.length; ++i) {
      const auto& child = *static_cast<const GumboNode*>(children.data[i]);
      if (child.type != GUMBO_NODE_ELEMENT || child.v.element.tag != GUMBO_TAG_CAPTION) continue;
      isCaption_ = true;
      walk(child, style, &names, depth + 1);
      isCaption_ = false;
    }
  }

  void walkRow(const GumboNode& node, const HtmlStyle& style, const css::ElementNames& names, int depth) {
    flow_.beginRow();
    walkChildren(node, style, names, depth);
    flow_.endRow();
  }

  void walkCell(const GumboNode& node, const HtmlStyle& style, const css::ElementNames& names, int depth) {
    const bool isBegun = isWithin_;
    if (isBegun)
      flow_.beginCell(numberOf(node, "rowspan").value_or(1), numberOf(node, "colspan").value_or(1));
    const List former = list_;
    walkChildren(node, style, names, depth);
    list_ = former;
    if (isBegun || isWithin_) flow_.endCell(style);
  }

  // The text that stands for it, as browsers copy it, or else its place.
  void addPicture(const GumboNode& node, const HtmlStyle& style) {
    const std::string_view text = attributeOf(node, "alt");
    if (!css::trimmed(text).empty()) return flow_.addText(wellFormedUtf8(text), style);
    if (!isTiny(node)) flow_.addPicture("Picture", style);
  }

  css::StyleSheet sheet_;
  HtmlFlow flow_;
  List list_;
  bool isWithin_ = true;  // The fragment that was copied, or the whole document.
  bool isCaption_ = false;
  bool hasText_ = false;  // Not only pictures.
};

}  // namespace

NSAttributedString attributedStringFromHtml(std::string_view html) {
  const std::string text = withoutDeepNesting(htmlText(html.substr(0, kMostBytes)));
  const std::unique_ptr<GumboOutput, void (*)(GumboOutput*)> tree(
      gumbo_parse_with_options(&kGumboDefaultOptions, text.data(), text.size()),
      [](GumboOutput* output) { gumbo_destroy_output(&kGumboDefaultOptions, output); });
  const bool isFragment = text.find("<!--StartFragment-->") != std::string::npos;
  return Walk().run(*tree->root, isFragment);
}

}  // namespace tarnix
