#pragma once

#include <memory>
#include <optional>

#include "platform/appkit/scroll_view.h"
#include "platform/swiftui/view_representable.h"

namespace tarnix {

// A text with its look in a scrolling text view.
struct ScrollableAttributedTextView {
  using Context = NSViewRepresentableContext<ScrollableAttributedTextView>;

  std::optional<NSAttributedString> attributedText = {};  // Absent leaves what is shown.
  std::optional<NSFont> font = {};                        // Takes the place of the fonts of the text.
  NSBorderType borderType = NSBorderType::noBorder;
  std::optional<NSColor> backgroundColor = {};  // Absent is that of a text view.
  bool drawsBackground = true;
  bool isEditable = false;

  std::shared_ptr<NSScrollView> makeNSView(const Context& context) const;
  void updateNSView(NSScrollView& scrollView, const Context& context) const;
};

}  // namespace tarnix
