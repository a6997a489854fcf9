#include "platform/swiftui/text_renderer.h"

#include <algorithm>

namespace tarnix {
namespace {

class TreeWriter {
 public:
  explicit TreeWriter(std::size_t maximumRows) : maximumRows_(maximumRows) {}

  void write(const Element& element, std::size_t depth) {
    const auto textOf = [](const auto& each) { return describe(each); };
    text_.append(depth * 2, ' ').append(std::visit(textOf, element.content));
    for (const auto& modifier : element.modifiers) text_.append(" ").append(std::visit(textOf, modifier));
    text_ += '\n';
    for (const Element& child : element.children) write(child, depth + 1);
    if (const auto* section = element.as<elements::Section>()) writeRows(*section, depth + 1);
    for (const Element& attachment : element.attachments) write(attachment, depth + 1);
  }
  std::string take() { return std::move(text_); }

 private:
  void writeRows(const elements::Section& section, std::size_t depth) {
    const std::size_t count = std::min(section.rowCount, maximumRows_);
    for (std::size_t i = 0; i < count; ++i) write(section.row(i), depth);
  }

  std::string text_;
  std::size_t maximumRows_;
};

}  // namespace

std::string renderText(const Element& tree, std::size_t maximumRows) {
  TreeWriter writer(maximumRows);
  writer.write(tree, 0);
  return writer.take();
}

}  // namespace tarnix
