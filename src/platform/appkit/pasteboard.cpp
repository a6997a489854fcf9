#include "platform/appkit/pasteboard.h"

#include "platform/platform.h"

namespace tarnix {

const NSPasteboard::PasteboardType& NSPasteboard::sourceType() {
  static const PasteboardType type{"org.nspasteboard.source"};
  return type;
}

std::shared_ptr<NSPasteboard> NSPasteboard::generalPasteboard() { return pasteboardWithName(Name::general); }

std::shared_ptr<NSPasteboard> NSPasteboard::pasteboardWithName(Name name) {
  return Platform::installed().pasteboards.at(static_cast<std::size_t>(name));
}

}  // namespace tarnix
