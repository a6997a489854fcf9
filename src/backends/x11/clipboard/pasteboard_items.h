#pragma once

#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "backends/x11/clipboard/snapshot.h"
#include "backends/x11/clipboard/type_mapping.h"
#include "platform/appkit/pasteboard.h"

namespace tarnix::x11 {

using PasteboardItems = std::vector<std::shared_ptr<NSPasteboardItem>>;

// One item for each local file of a list of files, else one item; none when the content is empty or secret.
// The first item carries everything but the further files.
PasteboardItems itemsOf(Content content, TypeMapping& mapping);

// Whether two contents are the same to a reader: the same text, whatever else is offered beside it, or
// without any text the same RTF, files, and a type in common. Text that is offered but could not be read is
// not the same.
bool isSameContent(const PasteboardItems& one, const PasteboardItems& other);

// What this program itself has put on the pasteboard, type by type.
class OwnItem : public NSPasteboardItem {
 public:
  std::vector<NSPasteboard::PasteboardType> types() const override;
  std::optional<String> stringForType(const NSPasteboard::PasteboardType& type) const override;
  void set(const NSPasteboard::PasteboardType& type, const String& text);

 private:
  std::vector<std::pair<NSPasteboard::PasteboardType, String>> texts_;
};

}  // namespace tarnix::x11
