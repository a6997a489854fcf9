#pragma once

#include <memory>
#include <string>

#include "platform/appkit/scroll_view.h"
#include "platform/swiftui/view.h"

namespace tarnix::test {

// Has a text view of the toolkit show a text, for reading, with the limit of lines that it finds behind it.
struct TextHost {
  using Context = NSViewRepresentableContext<TextHost>;

  struct Coordinator {
    int* dismantled = nullptr;
  };

  String text;
  int* made = nullptr;        // Counts the views,
  int* dismantled = nullptr;  // and those whose place has gone.

  std::shared_ptr<Coordinator> makeCoordinator() const {
    return std::make_shared<Coordinator>(Coordinator{dismantled});
  }
  static void dismantleNSView(NSScrollView&, const Coordinator& coordinator) {
    if (coordinator.dismantled != nullptr) ++*coordinator.dismantled;
  }

  std::shared_ptr<NSScrollView> makeNSView(const Context&) const {
    if (made != nullptr) ++*made;
    auto view = NSTextView::scrollableTextView();
    view->documentView()->setEditable(false);
    return view;
  }
  void updateNSView(NSScrollView& view, const Context& context) const {
    const auto limit = context.environment.lineLimit;
    view.documentView()->setString(limit ? String(text.str() + std::to_string(*limit)) : text);
  }
};

}  // namespace tarnix::test
