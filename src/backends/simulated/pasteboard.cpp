#include "backends/simulated/pasteboard.h"

#include <algorithm>

namespace tarnix::simulated {

std::vector<NSPasteboard::PasteboardType> PasteboardItem::types() const {
  std::vector<NSPasteboard::PasteboardType> types;
  for (const auto& entry : content_) types.push_back({entry.first});
  return types;
}

std::optional<String> PasteboardItem::stringForType(const NSPasteboard::PasteboardType& type) const {
  reads_.push_back(type.rawValue);
  const auto entry = std::find_if(content_.begin(), content_.end(),
                                  [&](const auto& candidate) { return candidate.first == type.rawValue; });
  return entry == content_.end() ? std::nullopt : entry->second;
}

void PasteboardItem::setString(const String& text, const String& type) {
  std::erase_if(content_, [&](const auto& entry) { return entry.first == type; });
  content_.emplace_back(type, text);
}

std::optional<std::vector<std::shared_ptr<NSPasteboardItem>>> Pasteboard::pasteboardItems() const {
  if (isUnreadable_) return std::nullopt;
  return std::vector<std::shared_ptr<NSPasteboardItem>>(items_.begin(), items_.end());
}

std::optional<String> Pasteboard::stringForType(const PasteboardType& type) const {
  if (isUnreadable_) return std::nullopt;
  for (const auto& item : items_) {
    if (auto text = item->stringForType(type)) return text;
  }
  return std::nullopt;
}

int Pasteboard::clearContents() {
  beginGeneration(true);
  if (changed_) changed_();
  return changeCount_;
}

bool Pasteboard::setString(const String& text, const PasteboardType& type) {
  if (!isOwn_) return false;
  if (items_.empty()) items_.push_back(std::make_shared<PasteboardItem>(ItemContent{}));
  items_.front()->setString(text, type.rawValue);
  return true;
}

void Pasteboard::write(const std::vector<ItemContent>& items) {
  beginGeneration(false);
  for (const ItemContent& content : items) items_.push_back(std::make_shared<PasteboardItem>(content));
  if (changed_) changed_();
}

void Pasteboard::beginGeneration(bool isOwn) {
  items_.clear();
  isOwn_ = isOwn;
  ++changeCount_;
}

AnyCancellable Pasteboard::whenSettled(std::function<void()> settled) const {
  if (!isUnreadable_) return NSPasteboard::whenSettled(std::move(settled));
  return settled_.publisher().sink([settled = std::move(settled)](const Void&) { settled(); });
}

void Pasteboard::settle() {
  setUnreadable(false);
  settled_.send({});
}

}  // namespace tarnix::simulated
