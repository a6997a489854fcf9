#include "detail/quick_look_preview.h"

#include <utility>

#include "platform/foundation/dispatch_queue.h"
#include "platform/foundation/file_manager.h"

namespace tarnix {

std::shared_ptr<QuickLookPreview::Coordinator> QuickLookPreview::makeCoordinator() const {
  return std::make_shared<Coordinator>(*this);
}

std::shared_ptr<QLPreviewView> QuickLookPreview::makeNSView(const Context&) const {
  auto view = std::make_shared<QLPreviewView>();
  view->setShouldCloseWithWindow(false);
  return view;
}

void QuickLookPreview::updateNSView(QLPreviewView& view, const Context&) const {
  view.setPreviewItem(previewItem);
}

void QuickLookPreview::dismantleNSView(QLPreviewView& view, const Coordinator& coordinator) {
  view.close();
  if (!coordinator.parent.shouldCleanUp) return;
  const auto url = coordinator.parent.previewItem->previewItemURL();
  if (!url) return;
  DispatchQueue::global(DispatchQoS::utility).async([files = NSFileManager::defaultManager(), url = *url] {
    files->removeItemAtURL(url);
  });
}

}  // namespace tarnix
