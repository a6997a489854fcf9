#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "capture/clipboard_item.h"
#include "capture/pasteboard.h"
#include "platform/foundation/string.h"
#include "platform/foundation/uuid.h"

namespace tarnix {

// The clips of a run, oldest first. The newest stands on top of every display.
using ClipHistory = std::vector<ClipboardItem>;

// The history at start: the first item of what already lies on the pasteboard, of unknown source and age.
ClipHistory seedHistory(const Pasteboard& pasteboard);

// Moves the first clip that equals `clip` to the newest place. Without one, nothing changes.
void moveToTop(ClipHistory& history, const ClipboardItem& clip);

// The clip with this identity, looked for from the newest; null when there is none.
const ClipboardItem* clipWithId(const ClipHistory& history, const std::optional<UUID>& id);

// The clips of a history whose title contains a text, however that is spelled in Unicode, newest first. Keeps
// positions, not clips: it is valid for the history that it was made from, and gives null for positions that
// a history no longer has.
class FilteredClips {
 public:
  // With an empty `searchText` every clip is in, and making this costs nothing.
  FilteredClips(const ClipHistory& history, const String& searchText);

  std::size_t size() const { return matches_ ? matches_->size() : total_; }
  const ClipboardItem* at(const ClipHistory& history, std::size_t position) const;
  std::optional<std::size_t> positionOf(const ClipHistory& history, const UUID& id) const;

 private:
  std::size_t total_;
  std::shared_ptr<const std::vector<std::uint32_t>> matches_;  // Absent: all clips.
};

}  // namespace tarnix
