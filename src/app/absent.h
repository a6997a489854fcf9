#pragma once

#include "platform/appkit/pasteboard.h"

namespace tarnix {

// Stands in for a pasteboard that this kind of desktop does not have: always empty, takes nothing.
class AbsentPasteboard final : public NSPasteboard {
 public:
  int changeCount() const override { return 0; }
  std::optional<std::vector<std::shared_ptr<NSPasteboardItem>>> pasteboardItems() const override {
    return std::nullopt;
  }
  std::optional<String> stringForType(const PasteboardType&) const override { return std::nullopt; }
  int clearContents() override { return 0; }
  bool setString(const String&, const PasteboardType&) override { return false; }
};

}  // namespace tarnix
