#include "capture/pasteboard.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <unordered_set>

#include "capture/hasher.h"

namespace tarnix {
namespace {

using PasteboardType = NSPasteboard::PasteboardType;
using PasteboardTypes = std::unordered_set<PasteboardType>;

constexpr std::string_view kPlatformPrefix = "CorePasteboardFlavorType";

bool hasModernCounterpart(const PasteboardType& type, const PasteboardTypes& present) {
  const auto row = Pasteboard::legacyTypeMap().find(type);
  return row != Pasteboard::legacyTypeMap().end() && present.contains(row->second);
}

bool isRedundant(const PasteboardType& type, const PasteboardTypes& present) {
  static const PasteboardType legacyURL{"Apple URL pasteboard type"};
  static const PasteboardType fileURL{"public.file-url"};
  if (type.rawValue.hasPrefix(kPlatformPrefix)) return true;
  if (type == legacyURL && present.contains(fileURL)) return true;
  return hasModernCounterpart(type, present);
}

}  // namespace

const std::array<Pasteboard, 5>& Pasteboard::allCases() {
  static constexpr std::array<Pasteboard, 5> cases = {general, drag, find, font, ruler};
  return cases;
}

const Pasteboard::LegacyTypeMap& Pasteboard::legacyTypeMap() {
  static const LegacyTypeMap map = {
      {{"NSStringPboardType"}, {"public.utf8-plain-text"}},
      {{"NSFilenamesPboardType"}, {"public.file-url"}},
      {{"NeXT TIFF v4.0 pasteboard type"}, {"public.tiff"}},
      {{"NeXT Rich Text Format v1.0 pasteboard type"}, {"public.rtf"}},
      {{"NeXT RTFD pasteboard type"}, {"com.apple.flat-rtfd"}},
      {{"Apple HTML pasteboard type"}, {"public.html"}},
      {{"Apple Web Archive pasteboard type"}, {"com.apple.webarchive"}},
      {{"Apple URL pasteboard type"}, {"public.url"}},
      {{"Apple PDF pasteboard type"}, {"com.adobe.pdf"}},
      {{"Apple PNG pasteboard type"}, {"public.png"}},
      {{"NSColor pasteboard type"}, {"com.apple.cocoa.pasteboard.color"}},
      {{"iOS rich content paste pasteboard type"}, {"com.apple.uikit.attributedstring"}},
  };
  return map;
}

std::shared_ptr<NSPasteboard> Pasteboard::nsPasteboard() const {
  switch (case_) {
    case general:
      return NSPasteboard::generalPasteboard();
    case drag:
      return NSPasteboard::pasteboardWithName(NSPasteboard::Name::drag);
    case find:
      return NSPasteboard::pasteboardWithName(NSPasteboard::Name::find);
    case font:
      return NSPasteboard::pasteboardWithName(NSPasteboard::Name::font);
    case ruler:
      return NSPasteboard::pasteboardWithName(NSPasteboard::Name::ruler);
  }
  return nullptr;
}

std::vector<Pasteboard::Item> Pasteboard::items() const {
  std::vector<Item> items;
  for (auto& item :
       nsPasteboard()->pasteboardItems().value_or(std::vector<std::shared_ptr<NSPasteboardItem>>())) {
    items.push_back({std::move(item)});
  }
  return items;
}

std::vector<PasteboardType> Pasteboard::Item::filteredTypes() const {
  auto types = rawValue->types();
  const PasteboardTypes present(types.begin(), types.end());
  std::erase_if(types, [&](const PasteboardType& type) { return isRedundant(type, present); });
  return types;
}

std::vector<Pasteboard::Type_> Pasteboard::Item::types() const {
  std::vector<Type_> pairs;
  for (auto& type : filteredTypes()) pairs.push_back({*this, std::move(type)});
  return pairs;
}

String Pasteboard::Type_::id() const { return std::to_string(item.id()) + "-" + xType.rawValue.str(); }

}  // namespace tarnix

std::size_t std::hash<tarnix::Pasteboard::Type_>::operator()(
    const tarnix::Pasteboard::Type_& type) const noexcept {
  tarnix::Hasher hasher;
  hasher.combine(type.item);
  hasher.combine(type.xType.rawValue);
  return hasher.finalize();
}
