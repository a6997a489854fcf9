#include "backends/qt/widgets/copied_text.h"

#include <algorithm>

#include "backends/qt/theme/text.h"
#include "platform/appkit/pasteboard.h"

namespace tarnix::qt {

void copyToPasteboard(const String& text) {
  NSPasteboard& pasteboard = *NSPasteboard::generalPasteboard();
  pasteboard.clearContents();
  pasteboard.setString(text, NSPasteboardTypeString);
}

// A unit is at most three bytes, and a character that is cut at the end is left out with the rest.
QString copiedText(int limit) {
  const auto text = NSPasteboard::generalPasteboard()->stringForType(NSPasteboardTypeString);
  if (!text) return {};
  const std::size_t bytes = std::min(text->size(), 3 * static_cast<std::size_t>(limit) + 3);
  return toQString(text->view().substr(0, bytes)).left(limit);
}

}  // namespace tarnix::qt
