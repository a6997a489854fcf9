#include "detail/scrollable_text_view.h"

namespace tarnix {

std::shared_ptr<ScrollableTextView::Coordinator> ScrollableTextView::makeCoordinator() const {
  return std::make_shared<Coordinator>(*this);
}

std::shared_ptr<NSScrollView> ScrollableTextView::makeNSView(const Context& context) const {
  auto scrollView = NSTextView::scrollableTextView();
  NSTextView& textView = *scrollView->documentView();
  textView.setDelegate(context.coordinator);
  textView.setDrawsBackground(false);
  textView.setSelectable(true);
  textView.setAllowsUndo(true);
  textView.setTextContainerInset({.width = 5, .height = 10});
  textView.setUsesAdaptiveColorMappingForDarkAppearance(true);
  return scrollView;
}

void ScrollableTextView::updateNSView(NSScrollView& scrollView, const Context& context) const {
  scrollView.setBorderType(borderType);
  scrollView.setDrawsBackground(drawsBackground);
  NSTextView& textView = *scrollView.documentView();
  textView.setEditable(isEditable);
  textView.setFont(font);
  const String shown = text.get();
  if (textView.string() != shown) textView.setString(shown);
  if (context.environment.lineLimit)
    textView.textContainer()->setMaximumNumberOfLines(*context.environment.lineLimit);
}

void ScrollableTextView::Coordinator::textDidChange(const NSNotification& notification) {
  const auto* textView = dynamic_cast<const NSTextView*>(notification.object.get());
  if (textView != nullptr) view.text.set(textView->string());
}

}  // namespace tarnix
