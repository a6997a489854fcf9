#pragma once

#include <memory>
#include <utility>

#include "platform/quicklook/preview_view.h"
#include "platform/swiftui/view_representable.h"

namespace tarnix {

// One item in the system's preview view.
struct QuickLookPreview {
  class Coordinator;
  using Context = NSViewRepresentableContext<QuickLookPreview>;

  bool shouldCleanUp = false;  // Delete the item's file once the view is gone.
  std::shared_ptr<const QLPreviewItem> previewItem;

  std::shared_ptr<Coordinator> makeCoordinator() const;
  std::shared_ptr<QLPreviewView> makeNSView(const Context& context) const;
  // Sets the item without a look at the one before.
  void updateNSView(QLPreviewView& view, const Context& context) const;
  // Closes the view. The removal goes on by itself on the queue for utilities; its failure is nobody's
  // business.
  static void dismantleNSView(QLPreviewView& view, const Coordinator& coordinator);
};

// Carries the host that the view was made by to the view's end.
class QuickLookPreview::Coordinator {
 public:
  explicit Coordinator(QuickLookPreview host) : parent(std::move(host)) {}

  const QuickLookPreview parent;
};

}  // namespace tarnix
