#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "platform/appkit/pasteboard.h"

namespace tarnix::simulated {

// What one item holds: types in order, with the text of those that have one.
using ItemContent = std::vector<std::pair<String, std::optional<String>>>;

class PasteboardItem final : public NSPasteboardItem {
 public:
  explicit PasteboardItem(ItemContent content) : content_(std::move(content)) {}

  std::vector<NSPasteboard::PasteboardType> types() const override;
  std::optional<String> stringForType(const NSPasteboard::PasteboardType& type) const override;

  void setString(const String& text, const String& type);
  // The types that were asked for so far, in order.
  const std::vector<String>& reads() const { return reads_; }

 private:
  ItemContent content_;
  mutable std::vector<String> reads_;
};

// A pasteboard in memory. `changed` runs after each change by a simulated program.
class Pasteboard final : public NSPasteboard {
 public:
  explicit Pasteboard(std::function<void()> changed) : changed_(std::move(changed)) {}

  int changeCount() const override { return changeCount_; }
  std::optional<std::vector<std::shared_ptr<NSPasteboardItem>>> pasteboardItems() const override;
  std::optional<String> stringForType(const PasteboardType& type) const override;
  AnyCancellable whenSettled(std::function<void()> settled) const override;
  int clearContents() override;
  bool setString(const String& text, const PasteboardType& type) override;

  // Another program puts a new generation in place.
  void write(const std::vector<ItemContent>& items);
  // From now on the content can't be had, as with an owner that doesn't answer.
  void setUnreadable(bool isUnreadable) { isUnreadable_ = isUnreadable; }
  // Ends that as well: the owner has answered at last.
  void settle();
  const std::vector<std::shared_ptr<PasteboardItem>>& items() const { return items_; }

 private:
  void beginGeneration(bool isOwn);

  std::function<void()> changed_;
  std::vector<std::shared_ptr<PasteboardItem>> items_;
  int changeCount_ = 0;
  bool isOwn_ = false;
  bool isUnreadable_ = false;
  Subject<Void> settled_;
};

}  // namespace tarnix::simulated
