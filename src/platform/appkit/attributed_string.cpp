#include "platform/appkit/attributed_string.h"

#include <functional>
#include <unordered_set>
#include <utility>

namespace tarnix {
namespace attributed_string {

// Hashing what differs most often is enough; equality tells the rest.
struct Hash {
  static void mix(std::size_t& seed, std::size_t value) { seed = (seed ^ value) * 0x9E3779B97F4A7C15U; }
  static std::size_t of(const std::optional<TextColor>& color) {
    return color ? 1U + color->red + 256U * color->green + 65536U * color->blue : 0U;
  }

  std::size_t operator()(const TextAttributes& attributes) const {
    std::size_t seed = std::hash<String>{}(attributes.font.familyName);
    mix(seed, std::hash<CGFloat>{}(attributes.font.pointSize));
    mix(seed, (attributes.font.isBold ? 1U : 0U) + (attributes.font.isItalic ? 2U : 0U));
    mix(seed, static_cast<std::size_t>(attributes.underline) +
                  8 * static_cast<std::size_t>(attributes.strikethrough));
    mix(seed, of(attributes.color));
    mix(seed, of(attributes.highlight));
    mix(seed, std::hash<String>{}(attributes.link));
    mix(seed, std::hash<String>{}(attributes.attachment));
    return seed;
  }
  std::size_t operator()(const ParagraphStyle& style) const {
    std::size_t seed = static_cast<std::size_t>(style.alignment);
    mix(seed, std::hash<CGFloat>{}(style.headIndent));
    mix(seed, std::hash<CGFloat>{}(style.firstLineIndent));
    mix(seed, std::hash<CGFloat>{}(style.spacingBefore));
    mix(seed, std::hash<CGFloat>{}(style.spacingAfter));
    mix(seed, std::hash<String>{}(style.listMarker));
    return seed;
  }
};

// Values, each once, by the order of their first use.
template <typename Value>
class Interned {
 public:
  std::uint32_t add(const Value& value) {
    if (const auto found = indices_.find(value); found != indices_.end()) return *found;
    const auto index = static_cast<std::uint32_t>(values_->size());
    values_->push_back(value);
    indices_.insert(index);
    return index;
  }
  const std::vector<Value>& values() const { return *values_; }

 private:
  // Finds an index by the value that has it.
  struct ByValue {
    using is_transparent = void;
    const std::vector<Value>* values;

    const Value& valueOf(std::uint32_t index) const { return (*values)[index]; }
    static const Value& valueOf(const Value& value) { return value; }
    std::size_t operator()(const auto& one) const { return Hash()(valueOf(one)); }
    bool operator()(const auto& one, const auto& other) const { return valueOf(one) == valueOf(other); }
  };

  std::unique_ptr<std::vector<Value>> values_ = std::make_unique<std::vector<Value>>();
  std::unordered_set<std::uint32_t, ByValue, ByValue> indices_{0, ByValue{values_.get()},
                                                               ByValue{values_.get()}};
};

}  // namespace attributed_string

namespace {

// The values that `ranges` use, in the order of their first use, so that equal texts are stored equally.
template <typename Value, typename Range>
std::vector<Value> keepUsed(const std::vector<Value>& values, std::vector<Range>& ranges,
                            std::uint32_t Range::*index) {
  constexpr std::uint32_t kUnused = ~std::uint32_t{0};
  std::vector<std::uint32_t> places(values.size(), kUnused);
  std::vector<Value> used;
  for (Range& range : ranges) {
    std::uint32_t& place = places[range.*index];
    if (place == kUnused) {
      place = static_cast<std::uint32_t>(used.size());
      used.push_back(values[range.*index]);
    }
    range.*index = place;
  }
  return used;
}

}  // namespace

NSAttributedString::NSAttributedString() {
  static const auto kEmpty = std::make_shared<const Content>();
  content_ = kEmpty;
}

NSAttributedString::NSAttributedString(const String& text) {
  AttributedStringBuilder builder;
  std::string_view rest = text;
  for (std::size_t end = rest.find('\n'); end != std::string_view::npos; end = rest.find('\n')) {
    builder.append(rest.substr(0, end), TextAttributes());
    builder.endParagraph('\n', 0, builder.add(ParagraphStyle()));
    rest.remove_prefix(end + 1);
  }
  builder.append(rest, TextAttributes());
  *this = builder.take();
}

struct AttributedStringBuilder::Tables {
  StringBuilder text;
  std::vector<NSAttributedString::Run> runs;
  std::vector<NSAttributedString::Paragraph> paragraphs;
  attributed_string::Interned<TextAttributes> attributes;
  attributed_string::Interned<ParagraphStyle> styles;
  std::vector<TableCell> cells;

  void endParagraph(std::uint32_t style, const TableCell* cell) {
    if (cell != nullptr && (paragraphs.empty() || paragraphs.back().cell == 0 || cells.back() != *cell))
      cells.push_back(*cell);
    paragraphs.push_back({size(), style, cell == nullptr ? 0 : static_cast<std::uint32_t>(cells.size())});
  }
  std::uint32_t size() const { return static_cast<std::uint32_t>(text.size()); }
};

AttributedStringBuilder::AttributedStringBuilder() : tables_(std::make_unique<Tables>()) {}
AttributedStringBuilder::AttributedStringBuilder(AttributedStringBuilder&&) noexcept = default;
AttributedStringBuilder& AttributedStringBuilder::operator=(AttributedStringBuilder&&) noexcept = default;
AttributedStringBuilder::~AttributedStringBuilder() = default;

std::uint32_t AttributedStringBuilder::add(const TextAttributes& attributes) {
  return tables_->attributes.add(attributes);
}

std::uint32_t AttributedStringBuilder::add(const ParagraphStyle& style) { return tables_->styles.add(style); }

void AttributedStringBuilder::append(std::string_view utf8, std::uint32_t attributes) {
  if (utf8.empty()) return;
  tables_->text.append(utf8);
  auto& runs = tables_->runs;
  if (!runs.empty() && runs.back().attributes == attributes) {
    runs.back().end = tables_->size();
  } else {
    runs.push_back({tables_->size(), attributes});
  }
}

void AttributedStringBuilder::endParagraph(char separator, std::uint32_t attributes, std::uint32_t style,
                                           const TableCell* cell) {
  append(std::string_view(&separator, 1), attributes);
  tables_->endParagraph(style, cell);
}

void AttributedStringBuilder::endText(std::uint32_t style, const TableCell* cell) {
  if (!isParagraphEmpty()) tables_->endParagraph(style, cell);
}

std::span<TableCell> AttributedStringBuilder::cells() { return tables_->cells; }

std::size_t AttributedStringBuilder::size() const { return tables_->text.size(); }

bool AttributedStringBuilder::isParagraphEmpty() const {
  const auto& paragraphs = tables_->paragraphs;
  return size() == (paragraphs.empty() ? 0 : paragraphs.back().end);
}

std::string_view AttributedStringBuilder::text() const { return tables_->text.view(); }

NSAttributedString AttributedStringBuilder::take() {
  if (!isParagraphEmpty()) endText(add(ParagraphStyle()));
  const auto tables = std::exchange(tables_, std::make_unique<Tables>());
  const auto content = std::make_shared<NSAttributedString::Content>();
  content->text = tables->text.take();
  content->runs = std::move(tables->runs);
  content->runs.shrink_to_fit();
  content->paragraphs = std::move(tables->paragraphs);
  content->paragraphs.shrink_to_fit();
  content->cells = std::move(tables->cells);
  content->cells.shrink_to_fit();
  content->attributes =
      keepUsed(tables->attributes.values(), content->runs, &NSAttributedString::Run::attributes);
  content->styles =
      keepUsed(tables->styles.values(), content->paragraphs, &NSAttributedString::Paragraph::style);
  return NSAttributedString(content);
}

}  // namespace tarnix
