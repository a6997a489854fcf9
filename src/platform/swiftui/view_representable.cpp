#include "platform/swiftui/view_representable.h"

#include "platform/appkit/scroll_view.h"
#include "platform/swiftui/elements.h"

namespace tarnix::elements {

std::string describe(const HostedView& hosted) {
  const auto* scrollView = dynamic_cast<const NSScrollView*>(hosted.view.get());
  if (scrollView == nullptr || !scrollView->documentView()) return "NSView";
  const NSTextView& text = *scrollView->documentView();
  std::string form = "NSTextView " + text_form::quoted(text.string());
  if (!text.textStorage()->isPlain()) form += " attributed";
  if (text.isEditable()) form += " editable";
  return form;
}

}  // namespace tarnix::elements
