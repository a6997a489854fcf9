#include "platform/appkit/pasteboard.h"

namespace tarnix {

const NSPasteboard::PasteboardType& NSPasteboard::sourceType() {
  static const PasteboardType type{"org.nspasteboard.source"};
  return type;
}

std::shared_ptr<NSPasteboard> NSPasteboard::generalPasteboard() { return pasteboardWithName(Name::general); }

}  // namespace tarnix
