#include "capture/clipboard_item.h"

#include <utility>

#include "capture/dynamic_type.h"
#include "capture/hasher.h"

namespace tarnix {
namespace {

using PasteboardType = NSPasteboard::PasteboardType;
using Contents = ClipboardItem::Contents;

// A history may hold a hundred thousand of these.
static_assert(sizeof(ClipboardItem) <= 26 * sizeof(void*));

// The text of `type` if it is `wanted`. Reads before it compares, so that whatever the owner has only
// promised is called in while the owner is there to give it.
std::optional<String> stringIf(const Pasteboard::Type_& type, const PasteboardType& wanted) {
  if (ClipboardItem::ignoredStringTypes().contains(type.xType)) return std::nullopt;
  auto text = type.item.rawValue->stringForType(type.xType);
  return type.xType == wanted ? std::move(text) : std::nullopt;
}

void readText(Contents& contents, const Pasteboard::Type_& type) {
  if (const auto text = stringIf(type, NSPasteboardTypeString)) {
    contents.possibleText = text;
    contents.title = *text;
  }
}

void readRtf(Contents& contents, const Pasteboard::Type_& type) {
  if (const auto rtf = stringIf(type, NSPasteboardTypeRTF)) contents.possibleRtf = rtf;
}

void readFile(Contents& contents, const Pasteboard::Type_& type) {
  static const PasteboardType fileURL{"public.file-url"};
  if (const auto path = stringIf(type, fileURL)) {
    contents.possibleFileUrl = URL(*path, URL::DirectoryHint::inferFromPath);
    contents.possibleUT = UTType::named(type.xType.rawValue);
  }
}

std::vector<String> readableNames(const std::vector<Pasteboard::Type_>& types) {
  std::vector<String> names;
  names.reserve(types.size());
  for (const auto& type : types) names.push_back(readableName(type.xType));
  return names;
}

void describeSource(ClipboardItem& item, const NSPasteboard::ContentsInfo& info) {
  item.date = info.created;
  item.sourceAppId = info.sourceAppBundleIdentifier;
  item.sourceAppURL = info.sourceAppURL;
}

}  // namespace

const std::unordered_set<PasteboardType>& ClipboardItem::ignoredStringTypes() {
  static const std::unordered_set<PasteboardType> types = {
      {"com.apple.pasteboard.promised-suggested-file-name"}};
  return types;
}

ClipboardItem ClipboardItem::capture(const Pasteboard::Item& content,
                                     const std::optional<NSPasteboard::ContentsInfo>& info) {
  ClipboardItem item;
  item.id = UUID::random();
  item.content = content;
  item.types = readableNames(content.types());
  auto contents = readContents(content);
  item.itemType = contents.itemType;
  item.title = std::move(contents.title);
  item.possibleText = std::move(contents.possibleText);
  item.possibleRtf = std::move(contents.possibleRtf);
  item.possibleFileUrl = std::move(contents.possibleFileUrl);
  item.possibleUT = std::move(contents.possibleUT);
  if (info) describeSource(item, *info);
  return item;
}

ClipboardItem::Contents ClipboardItem::readContents(const Pasteboard::Item& item) {
  static const String unknown = "Unknown";
  Contents contents;
  contents.title = unknown;
  for (const auto& type : item.types()) {
    readText(contents, type);
    readRtf(contents, type);
    readFile(contents, type);
  }
  contents.itemType = contents.possibleFileUrl ? ClipboardItemType::fileItem : ClipboardItemType::textItem;
  return contents;
}

bool ClipboardItem::hasRtfVariant() const {
  return itemType == ClipboardItemType::textItem && possibleRtf && possibleText;
}

}  // namespace tarnix

std::size_t std::hash<tarnix::ClipboardItem>::operator()(const tarnix::ClipboardItem& item) const noexcept {
  tarnix::Hasher hasher;
  hasher.combine(item.id);
  hasher.combine(item.title);
  hasher.combine(item.content);
  hasher.combine(item.sourceAppId);
  hasher.combine(item.sourceAppURL);
  hasher.combine(item.types.size());
  for (const auto& type : item.types) hasher.combine(type);
  hasher.combine(item.date);
  hasher.combine(rawValue(item.itemType));
  hasher.combine(item.possibleText);
  hasher.combine(item.possibleRtf);
  hasher.combine(item.possibleFileUrl);
  hasher.combine(item.possibleUT);
  return hasher.finalize();
}
