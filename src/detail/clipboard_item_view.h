#pragma once

#include <functional>
#include <tuple>

#include "capture/clipboard_item.h"
#include "detail/rtf_reading.h"
#include "platform/combine/timer_publisher.h"
#include "platform/swiftui/view.h"
#include "settings/views/default.h"

namespace tarnix {

// One clip in its best form, with what is known of it below, and the way back to the pasteboard. The clip
// stays the one that the view was made with for as long as it keeps its identity.
class ClipboardItemView {
 public:
  using MoveToTop = std::function<void(const ClipboardItem&)>;

  ClipboardItemView(ClipboardItem item, MoveToTop moveToTop);

  View body() const;
  static auto state() {
    return std::tuple{&ClipboardItemView::watching,  &ClipboardItemView::item,
                      &ClipboardItemView::moveToTop, &ClipboardItemView::redraw,
                      &ClipboardItemView::showRtf,   &ClipboardItemView::showInfo,
                      &ClipboardItemView::rtfReading};
  }

  Publisher<Date> timer;  // Keeps the age current.
  Default<bool> watching;
  State<ClipboardItem> item;
  State<MoveToTop> moveToTop;
  State<bool> redraw{false};
  State<bool> showRtf{true};
  State<bool> showInfo{false};
  StateObject<RtfReading> rtfReading;

 private:
  View content() const;
  View text() const;
  View plainText() const;
  View richText() const;
  View file() const;

  View footer() const;
  View informationButton() const;
  View types() const;
  View source() const;
  View age() const;
  bool isAgeKnown() const;

  std::vector<View> toolbarItems() const;
  void copyBack() const;
  void writeToPasteboard() const;
};

}  // namespace tarnix
