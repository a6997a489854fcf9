#include "platform/appkit/text_view.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "platform/appkit/scroll_view.h"
#include "platform/appkit/workspace.h"
#include "platform/foundation/url.h"

namespace tarnix {
namespace {

constexpr std::string_view kDidChange = "NSTextDidChangeNotification";

char lowered(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

std::string lowered(std::string_view text) {
  std::string result(text);
  std::ranges::transform(result, result.begin(), [](char each) { return lowered(each); });
  return result;
}

// A link comes from a stranger's document, so that nothing on this machine may be opened by it.
std::optional<URL> openable(std::string_view link) {
  constexpr std::array<std::string_view, 3> kSchemes{"http://", "https://", "mailto:"};
  const std::string start = lowered(link.substr(0, 8));
  const bool isAllowed =
      std::ranges::any_of(kSchemes, [&](std::string_view scheme) { return start.starts_with(scheme); });
  return isAllowed ? URL::fromString(link) : std::nullopt;
}

}  // namespace

NSTextView::NSTextView()
    : storage_(std::make_shared<NSTextStorage>([this] { noteChange(); })),
      container_(std::make_shared<NSTextContainer>([this] { noteChange(); })) {}

std::shared_ptr<NSScrollView> NSTextView::scrollableTextView() {
  auto scrollView = std::make_shared<NSScrollView>();
  scrollView->setDocumentView(std::make_shared<NSTextView>());
  return scrollView;
}

void NSTextView::setFont(const NSFont& font) {
  font_ = font;
  storage_->setFont(font);
}

void NSTextView::textWasEdited(const String& text) {
  setString(text);
  tellDelegate();
}

void NSTextView::textWasEdited(const NSAttributedString& text) {
  storage_->setAttributedString(text);
  tellDelegate();
}

void NSTextView::tellDelegate() {
  if (const auto told = delegate()) told->textDidChange({kDidChange, shared_from_this()});
}

bool NSTextView::canOpenLink(const String& link) { return openable(link).has_value(); }

bool NSTextView::clickedOnLink(const String& link) {
  const auto url = openable(link);
  return url && NSWorkspace::sharedWorkspace().openURL(*url);
}

}  // namespace tarnix
