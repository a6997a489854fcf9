#include "detail/scrollable_attributed_text_view.h"

namespace tarnix {

std::shared_ptr<NSScrollView> ScrollableAttributedTextView::makeNSView(const Context&) const {
  auto scrollView = NSTextView::scrollableTextView();
  NSTextView& textView = *scrollView->documentView();
  textView.setDrawsBackground(false);
  textView.setSelectable(true);
  textView.setTextContainerInset({.width = 5, .height = 10});
  textView.setTextColor(NSColor::controlTextColor());
  textView.setUsesAdaptiveColorMappingForDarkAppearance(true);
  return scrollView;
}

void ScrollableAttributedTextView::updateNSView(NSScrollView& scrollView, const Context& context) const {
  scrollView.setBorderType(borderType);
  scrollView.setDrawsBackground(drawsBackground);
  NSTextView& textView = *scrollView.documentView();
  textView.setEditable(isEditable);
  textView.setBackgroundColor(backgroundColor ? *backgroundColor : NSTextView().backgroundColor());
  const auto& storage = textView.textStorage();
  if (attributedText && storage && *attributedText != textView.attributedString())
    storage->setAttributedString(*attributedText);
  if (font) textView.setFont(*font);
  if (context.environment.lineLimit)
    textView.textContainer()->setMaximumNumberOfLines(*context.environment.lineLimit);
}

}  // namespace tarnix
