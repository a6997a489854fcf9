#include "platform/appkit/text_storage.h"

#include <algorithm>

namespace tarnix {
namespace {

// The same text and look but for the font.
NSAttributedString inFont(const NSAttributedString& text, const NSFont& font) {
  AttributedStringBuilder builder;
  const std::string_view bytes = text.string();
  auto run = text.runs().begin();
  std::size_t begin = 0;
  const auto appendUpTo = [&](std::size_t end) {
    while (begin < end) {
      TextAttributes attributes = text.attributesOf(*run);
      attributes.font = font;
      const std::size_t stop = std::min<std::size_t>(end, run->end);
      builder.append(bytes.substr(begin, stop - begin), attributes);
      begin = stop;
      if (begin == run->end) ++run;
    }
  };
  for (const auto& paragraph : text.paragraphs()) {
    appendUpTo(paragraph.end);
    builder.endText(builder.add(text.styleOf(paragraph)), text.cellOf(paragraph));
  }
  return builder.take();
}

// A plain text as one with attributes.
NSAttributedString attributedIn(const String& text, const NSFont& font) {
  const NSAttributedString inDefaultFont(text);
  return font == NSFont() ? inDefaultFont : inFont(inDefaultFont, font);
}

}  // namespace

const NSAttributedString& NSTextStorage::attributedString() const {
  if (!attributed_) attributed_ = attributedIn(text_, *plainFont_);
  return *attributed_;
}

void NSTextStorage::setAttributedString(NSAttributedString text) {
  attributed_ = std::move(text);
  text_ = {};
  plainFont_.reset();
  changed_();
}

void NSTextStorage::setPlain(String text, const NSFont& font) {
  text_ = std::move(text);
  plainFont_ = font;
  attributed_.reset();
  changed_();
}

void NSTextStorage::setFont(const NSFont& font) {
  if (isPlain()) {
    if (*plainFont_ != font) setPlain(text_, font);
    return;
  }
  const auto hasFont = [&](const TextAttributes& each) { return each.font == font; };
  if (std::ranges::all_of(attributed_->attributes(), hasFont)) return;
  setAttributedString(inFont(*attributed_, font));
}

}  // namespace tarnix
