#pragma once

#include <optional>
#include <unordered_set>
#include <vector>

#include "capture/clipboard_item_type.h"
#include "capture/contents_info.h"
#include "capture/pasteboard.h"
#include "platform/foundation/ut_type.h"

namespace tarnix {

// A clip: one pasteboard item as it was at one moment. It lives in memory only and is copied by value, which
// copies none of its text. Equal only when all fields are, so never for two captures.
struct ClipboardItem {
  struct Contents;

  UUID id;       // Fresh for each capture; not changed afterwards.
  String title;  // What the list shows: the whole plain text, or "Unknown".
  std::optional<Pasteboard::Item> content;
  std::optional<String> sourceAppId;
  std::optional<URL> sourceAppURL;
  std::vector<String> types;  // Readable names of the filtered types, in the item's order.
  std::optional<Date> date;   // Absent for what lay on the pasteboard before it was watched.
  ClipboardItemType itemType = ClipboardItemType::unassigned;
  std::optional<String> possibleText;
  std::optional<String> possibleRtf;   // RTF source.
  std::optional<URL> possibleFileUrl;  // Present just when the clip is a file.
  std::optional<UTType> possibleUT;    // The type that gave `possibleFileUrl`.

  // Types that are listed but never read.
  static const std::unordered_set<NSPasteboard::PasteboardType>& ignoredStringTypes();

  // Makes the clip of `content`; the time and the source come from `info`. Main thread.
  static ClipboardItem capture(const Pasteboard::Item& content,
                               const std::optional<NSPasteboard::ContentsInfo>& info);
  // What the types of `item` hold. Of two types that fill the same field the later one wins.
  static Contents readContents(const Pasteboard::Item& item);

  // True for a text that comes with formatting.
  bool hasRtfVariant() const;

  friend bool operator==(const ClipboardItem&, const ClipboardItem&) = default;
};

// The part of a clip that is read from the types of its item; the fields mean what they mean there.
struct ClipboardItem::Contents {
  ClipboardItemType itemType = ClipboardItemType::unassigned;
  String title;
  std::optional<String> possibleText;
  std::optional<String> possibleRtf;
  std::optional<URL> possibleFileUrl;
  std::optional<UTType> possibleUT;
};

}  // namespace tarnix

template <>
struct std::hash<tarnix::ClipboardItem> {
  // Reads the whole text.
  std::size_t operator()(const tarnix::ClipboardItem& item) const noexcept;
};
