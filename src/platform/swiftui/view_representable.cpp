#include "platform/swiftui/view_representable.h"

#include "platform/appkit/scroll_view.h"
#include "platform/quicklook/preview_view.h"
#include "platform/swiftui/elements.h"

namespace tarnix::elements {
namespace {

std::string describePreview(const QLPreviewView& preview) {
  const auto url = preview.previewItem() ? preview.previewItem()->previewItemURL() : std::nullopt;
  return url ? "QLPreviewView " + text_form::quoted(url->absoluteString()) : "QLPreviewView";
}

}  // namespace

std::string describe(const HostedView& hosted) {
  if (const auto* preview = dynamic_cast<const QLPreviewView*>(hosted.view.get()))
    return describePreview(*preview);
  const auto* scrollView = dynamic_cast<const NSScrollView*>(hosted.view.get());
  if (scrollView == nullptr || !scrollView->documentView()) return "NSView";
  const NSTextView& text = *scrollView->documentView();
  std::string form = "NSTextView " + text_form::quoted(text.string());
  if (!text.textStorage()->isPlain()) form += " attributed";
  if (text.isEditable()) form += " editable";
  return form;
}

}  // namespace tarnix::elements
