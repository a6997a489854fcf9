#pragma once

#include <memory>
#include <optional>
#include <tuple>
#include <vector>

#include "capture/pasteboard.h"
#include "capture/pasteboard_observable.h"
#include "history/clip_history.h"
#include "platform/swiftui/view.h"
#include "settings/views/default.h"

namespace tarnix {

// The one view of the window: the searchable list of clips with the switch and the clear button below it, and
// beside it the selected clip. Holds the history and carries out its operations. Making one takes the first
// clip from the pasteboard.
class ContentView {
 public:
  ContentView();

  View body() const;
  static auto state() {
    return std::tuple{&ContentView::selectedItemId,
                      &ContentView::watching,
                      &ContentView::clipboard,
                      &ContentView::showClearConfirmation,
                      &ContentView::pasteboardObservable,
                      &ContentView::pboard,
                      &ContentView::searchText};
  }

  // Takes what lay on the pasteboard before the start, where it could only be read after the view was made:
  // as the oldest clip, with neither date nor source, not selected, and whether clips are taken or not.
  void takeLateSeed() const;
  // Puts the equal clip, if it is still in the list, on top; the selection stays.
  void moveToTop(const ClipboardItem& clip) const;

  State<std::optional<UUID>> selectedItemId;
  Default<bool> watching;
  State<ClipHistory> clipboard;
  State<bool> showClearConfirmation{false};
  StateObject<NSPasteboard::Observable> pasteboardObservable;
  State<Pasteboard> pboard{Pasteboard::general};
  State<String> searchText;

 private:
  void capture() const;
  bool isSeed(const Pasteboard::Item& item) const;
  void clear() const;

  View sidebar() const;
  View strip() const;
  View clearButton() const;
  View row(const FilteredClips& clips, std::size_t position) const;
  View detail() const;
};

}  // namespace tarnix
