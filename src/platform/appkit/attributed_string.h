#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "platform/appkit/text_attributes.h"
#include "platform/foundation/string.h"

namespace tarnix {

// A line break within a paragraph, and what stands for a picture.
inline constexpr std::string_view kLineSeparator = "\xE2\x80\xA8";
inline constexpr std::string_view kAttachment = "\xEF\xBF\xBC";

// Immutable text with the look of its characters and paragraphs. Equal by value; a copy shares everything,
// and copies are compared at once. Safe to copy and to read from any thread.
//
// Positions are offsets of UTF-8 bytes. Runs and paragraphs follow each other without a gap from the first
// byte to the last; an empty text has neither. Neighbouring runs differ in their attributes. A paragraph ends
// with a line feed, and the last paragraph of a table's cell with a tab unless it is the row's last cell; the
// last of the text may end without. U+2028 is a line break within a paragraph, a form feed one of the page.
class NSAttributedString {
 public:
  struct Run {
    std::uint32_t end = 0;         // Behind its last byte.
    std::uint32_t attributes = 0;  // The index in `attributes()`.
    friend bool operator==(const Run&, const Run&) = default;
  };
  struct Paragraph {
    std::uint32_t end = 0;
    std::uint32_t style = 0;  // The index in `styles()`.
    std::uint32_t cell = 0;   // In a table, the index in `cells()` from 1 on.
    friend bool operator==(const Paragraph&, const Paragraph&) = default;
  };

  NSAttributedString();
  // In default attributes throughout.
  explicit NSAttributedString(const String& text);

  const String& string() const { return content_->text; }
  std::span<const Run> runs() const { return content_->runs; }
  std::span<const Paragraph> paragraphs() const { return content_->paragraphs; }
  // Each once, in the order of their first use.
  std::span<const TextAttributes> attributes() const { return content_->attributes; }
  std::span<const ParagraphStyle> styles() const { return content_->styles; }
  // Neighbouring paragraphs of one cell share it.
  std::span<const TableCell> cells() const { return content_->cells; }
  const TextAttributes& attributesOf(const Run& run) const { return content_->attributes[run.attributes]; }
  const ParagraphStyle& styleOf(const Paragraph& paragraph) const {
    return content_->styles[paragraph.style];
  }
  // Null outside of tables.
  const TableCell* cellOf(const Paragraph& paragraph) const {
    return paragraph.cell == 0 ? nullptr : &content_->cells[paragraph.cell - 1];
  }

  friend bool operator==(const NSAttributedString& a, const NSAttributedString& b) {
    return a.content_ == b.content_ || *a.content_ == *b.content_;
  }

 private:
  friend class AttributedStringBuilder;
  struct Content {
    String text;
    std::vector<Run> runs;
    std::vector<Paragraph> paragraphs;
    std::vector<TextAttributes> attributes;
    std::vector<ParagraphStyle> styles;
    std::vector<TableCell> cells;
    friend bool operator==(const Content&, const Content&) = default;
  };
  explicit NSAttributedString(std::shared_ptr<const Content> content) : content_(std::move(content)) {}

  std::shared_ptr<const Content> content_;
};

// Puts an attributed string together from front to back.
class AttributedStringBuilder {
 public:
  AttributedStringBuilder();
  AttributedStringBuilder(AttributedStringBuilder&&) noexcept;
  AttributedStringBuilder& operator=(AttributedStringBuilder&&) noexcept;
  ~AttributedStringBuilder();

  // Identifiers of attributes and styles, for those who use the same many times. Valid until `take`.
  std::uint32_t add(const TextAttributes& attributes);
  std::uint32_t add(const ParagraphStyle& style);

  // `utf8` must be well-formed, and hold no separator of paragraphs.
  void append(std::string_view utf8, std::uint32_t attributes);
  void append(std::string_view utf8, const TextAttributes& attributes) { append(utf8, add(attributes)); }
  // Ends the paragraph at hand with a separator, '\n' or '\t' as told above. `cell` is
  // where it stands, null outside of tables.
  void endParagraph(char separator, std::uint32_t attributes, std::uint32_t style,
                    const TableCell* cell = nullptr);
  // The same without a separator, which must be the end of the text; nothing for an empty paragraph.
  void endText(std::uint32_t style, const TableCell* cell = nullptr);

  // Those so far, of which something else may become known.
  std::span<TableCell> cells();
  std::size_t size() const;       // In bytes.
  bool isParagraphEmpty() const;  // Nothing was appended since the last separator.
  std::string_view text() const;

  // The builder is empty afterwards. A paragraph that was not ended is given the default style.
  NSAttributedString take();

 private:
  struct Tables;
  std::unique_ptr<Tables> tables_;
};

}  // namespace tarnix
