#pragma once

#include <memory>

#include "platform/appkit/scroll_view.h"
#include "platform/swiftui/binding.h"
#include "platform/swiftui/view_representable.h"

namespace tarnix {

// A plain text in a scrolling text view. What the user writes there goes through the binding.
struct ScrollableTextView {
  class Coordinator;
  using Context = NSViewRepresentableContext<ScrollableTextView>;

  Binding<String> text;
  NSFont font;
  NSBorderType borderType = NSBorderType::noBorder;
  bool drawsBackground = true;
  bool isEditable = false;

  std::shared_ptr<Coordinator> makeCoordinator() const;
  std::shared_ptr<NSScrollView> makeNSView(const Context& context) const;
  void updateNSView(NSScrollView& scrollView, const Context& context) const;
};

// Writes what the user has changed to the binding of the host that it was made for.
class ScrollableTextView::Coordinator : public NSTextViewDelegate {
 public:
  explicit Coordinator(ScrollableTextView host) : view(std::move(host)) {}
  // Ignores notifications of anything but a text view.
  void textDidChange(const NSNotification& notification) override;

  ScrollableTextView view;
};

}  // namespace tarnix
