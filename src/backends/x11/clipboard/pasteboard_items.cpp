#include "backends/x11/clipboard/pasteboard_items.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>

#include "backends/x11/clipboard/uri_list.h"

namespace tarnix::x11 {
namespace {

using PasteboardType = NSPasteboard::PasteboardType;

const std::array<const PasteboardType*, 4>& readTypes() {
  static const std::array kTypes{&types::text, &types::rtf, &types::fileURL, &types::source};
  return kTypes;
}

// An item of another program. There is one for each clip of a long history, so it is kept small: what is
// absent is a bit, and the list of types is shared.
class FetchedItem : public NSPasteboardItem {
 public:
  FetchedItem(TypeMapping::TypeList types, std::array<std::optional<String>, 4> texts)
      : types_(std::move(types)) {
    for (std::size_t index = 0; index < texts.size(); ++index) {
      if (!texts[index]) continue;
      present_ |= static_cast<std::uint8_t>(1 << index);
      texts_[index] = std::move(*texts[index]);
    }
  }

  std::vector<PasteboardType> types() const override { return *types_; }

  std::optional<String> stringForType(const PasteboardType& type) const override {
    for (std::size_t index = 0; index < texts_.size(); ++index) {
      if ((present_ >> index & 1) != 0 && *readTypes()[index] == type) return texts_[index];
    }
    return std::nullopt;
  }

 private:
  TypeMapping::TypeList types_;
  std::array<String, 4> texts_;  // In the order of `readTypes()`.
  std::uint8_t present_ = 0;
};

String joinedPaths(const std::vector<String>& paths) {
  std::string joined;
  for (const String& path : paths) {
    if (!joined.empty()) joined += '\n';
    joined += path.view();
  }
  return String(joined);
}

}  // namespace

PasteboardItems itemsOf(Content content, TypeMapping& mapping) {
  if (content.isSecret) return {};
  const UriList files = content.files.value_or(UriList{});
  const bool hasPaths = !files.paths.empty();
  // Some file managers offer no text, and others a list under a heading of its own.
  const bool lacksText = !content.text || isFileListInDisguise(*content.text);
  if (hasPaths && lacksText) content.text = joinedPaths(files.paths);
  const auto types = mapping.typesOf(content.targets, {.areFilesKnown = content.files.has_value(),
                                                       .hasPaths = hasPaths,
                                                       .hasOtherUris = files.hasOthers,
                                                       .hasText = content.text.has_value(),
                                                       .hasMadeRtf = content.isRtfMade});
  if (types->empty()) return {};
  const auto firstPath = hasPaths ? std::optional(files.paths.front()) : std::nullopt;
  PasteboardItems items;
  items.push_back(std::make_shared<FetchedItem>(
      types,
      std::array{std::move(content.text), std::move(content.rtf), firstPath, std::move(content.source)}));
  const auto furtherTypes = mapping.listOf({types::fileURL});
  for (std::size_t index = 1; index < files.paths.size(); ++index) {
    items.push_back(std::make_shared<FetchedItem>(
        furtherTypes,
        std::array<std::optional<String>, 4>{std::nullopt, std::nullopt, files.paths[index], std::nullopt}));
  }
  return items;
}

bool isSameContent(const PasteboardItems& one, const PasteboardItems& other) {
  if (one.empty() || other.empty()) return one.empty() && other.empty();
  const auto text = one[0]->stringForType(types::text), otherText = other[0]->stringForType(types::text);
  if (text || otherText) return text == otherText;
  if (one[0]->stringForType(types::rtf) != other[0]->stringForType(types::rtf)) return false;
  const auto hasSamePath = [](const auto& a, const auto& b) {
    return a->stringForType(types::fileURL) == b->stringForType(types::fileURL);
  };
  const auto names = one[0]->types(), otherNames = other[0]->types();
  if (std::find(names.begin(), names.end(), types::text) != names.end()) return false;
  return std::equal(one.begin(), one.end(), other.begin(), other.end(), hasSamePath) &&
         std::find_first_of(names.begin(), names.end(), otherNames.begin(), otherNames.end()) != names.end();
}

std::vector<PasteboardType> OwnItem::types() const {
  std::vector<PasteboardType> list;
  for (const auto& [type, text] : texts_) list.push_back(type);
  return list;
}

std::optional<String> OwnItem::stringForType(const PasteboardType& type) const {
  const auto found =
      std::find_if(texts_.begin(), texts_.end(), [&type](const auto& entry) { return entry.first == type; });
  return found == texts_.end() ? std::nullopt : std::optional(found->second);
}

void OwnItem::set(const PasteboardType& type, const String& text) {
  const auto found =
      std::find_if(texts_.begin(), texts_.end(), [&type](const auto& entry) { return entry.first == type; });
  if (found == texts_.end()) {
    texts_.emplace_back(type, text);
  } else {
    found->second = text;
  }
}

}  // namespace tarnix::x11
