#pragma once

#include <cstdint>
#include <functional>
#include <string_view>

#include "platform/appkit/rich_text/html/css_values.h"
#include "platform/appkit/text_attributes.h"

namespace tarnix {

// How an element of a document looks: what it has from around it, by its kind, by its attributes, and by
// styles.
struct HtmlStyle {
  enum class Display : std::uint8_t { none, inlined, block, listItem, table, tableRow, tableCell };
  enum class WhiteSpace : std::uint8_t { normal, pre, preWrap, preLine, nowrap };
  enum class Marker : std::uint8_t {
    none,
    disc,
    circle,
    square,
    decimal,
    lowerAlpha,
    upperAlpha,
    lowerRoman,
    upperRoman
  };

  TextAttributes look;
  ParagraphStyle paragraph;
  Display display = Display::inlined;
  WhiteSpace whiteSpace = WhiteSpace::normal;
  Marker marker = Marker::disc;
  bool isHidden = false;  // `visibility`.

  // What an element has before anything is said of it; `look` and `paragraph` as far as they are handed down.
  HtmlStyle inherited() const;

  void applyKind(std::string_view tag);
  // `attribute` gives an attribute's value, empty for one that is not there.
  void applyAttributes(std::string_view tag, const std::function<std::string_view(const char*)>& attribute);
  // `parentSize` is that of the parent's font, in points.
  void apply(const css::Declaration& declaration, double parentSize);

 private:
  void applyFont(const css::Declaration& declaration, double parentSize);
  void applyText(const css::Declaration& declaration);
  void applyBox(const css::Declaration& declaration);
  void setDecoration(std::string_view value);
  void setMarker(std::string_view value);
};

}  // namespace tarnix
