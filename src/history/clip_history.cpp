#include "history/clip_history.h"

#include <algorithm>
#include <utility>

#include "history/title_search.h"

namespace tarnix {
ClipHistory seedHistory(const Pasteboard& pasteboard) {
  const auto items = pasteboard.items();
  ClipHistory history;
  if (!items.empty()) history.push_back(ClipboardItem::capture(items.front(), std::nullopt));
  return history;
}

void moveToTop(ClipHistory& history, const ClipboardItem& clip) {
  const auto found = std::find(history.begin(), history.end(), clip);
  if (found != history.end()) std::rotate(found, found + 1, history.end());
}

const ClipboardItem* clipWithId(const ClipHistory& history, const std::optional<UUID>& id) {
  if (!id) return nullptr;
  const auto found =
      std::find_if(history.rbegin(), history.rend(), [&](const auto& clip) { return clip.id == *id; });
  return found == history.rend() ? nullptr : &*found;
}

FilteredClips::FilteredClips(const ClipHistory& history, const String& searchText) : total_(history.size()) {
  if (searchText.empty()) return;
  const TitleSearch search(searchText);
  auto matches = std::make_shared<std::vector<std::uint32_t>>();
  // Forwards, as memory is read fastest, and turned round at the end.
  for (std::size_t i = 0; i < history.size(); ++i) {
    if (search.isIn(history[i].title)) matches->push_back(static_cast<std::uint32_t>(i));
  }
  std::reverse(matches->begin(), matches->end());
  matches_ = std::move(matches);
}

const ClipboardItem* FilteredClips::at(const ClipHistory& history, std::size_t position) const {
  if (position >= size()) return nullptr;
  const std::size_t index = matches_ ? (*matches_)[position] : total_ - 1 - position;
  return index < history.size() ? &history[index] : nullptr;
}

std::optional<std::size_t> FilteredClips::positionOf(const ClipHistory& history, const UUID& id) const {
  for (std::size_t position = 0; position < size(); ++position) {
    const ClipboardItem* clip = at(history, position);
    if (clip != nullptr && clip->id == id) return position;
  }
  return std::nullopt;
}

}  // namespace tarnix
