#pragma once

#include <memory>
#include <utility>

#include "platform/appkit/view.h"
#include "platform/quicklook/preview_item.h"

namespace tarnix {

// A view that previews one item: its picture, its text, its pages. Owned by `shared_ptr`.
class QLPreviewView : public NSView {
 public:
  bool shouldCloseWithWindow() const { return shouldCloseWithWindow_; }
  void setShouldCloseWithWindow(bool shouldClose) { change(shouldCloseWithWindow_, shouldClose); }

  // Null while there is none, and once the view is closed.
  const std::shared_ptr<const QLPreviewItem>& previewItem() const { return item_; }
  // A closed view takes none.
  void setPreviewItem(std::shared_ptr<const QLPreviewItem> item) {
    if (!isClosed_) change(item_, std::move(item));
  }

  bool isClosed() const { return isClosed_; }
  // Lets go of the item for good. Closing again changes nothing.
  void close() {
    if (std::exchange(isClosed_, true)) return;
    item_.reset();
    noteChange();
  }

 private:
  std::shared_ptr<const QLPreviewItem> item_;
  bool shouldCloseWithWindow_ = true;
  bool isClosed_ = false;
};

}  // namespace tarnix
