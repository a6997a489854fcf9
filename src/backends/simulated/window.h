#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/appkit/text_view.h"
#include "platform/swiftui/view_graph.h"

namespace tarnix::simulated {

// A window without a screen: it shows a view and lets a test do what a user would. Everything a control
// causes happens in the next turn of the run loop, as on a real desktop.
class Window {
 public:
  struct Row {
    std::string symbol;
    std::string title;
    std::size_t badge = 0;
    std::optional<UUID> tag;
    bool isSelected = false;
  };

  Window(const View& root, RunLoop& loop);
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;

  // The shown tree as text.
  std::string text() const;
  std::vector<Row> rows() const;
  std::vector<std::string> titles() const;
  // The text of the detail column's text view; absent when it shows something else.
  std::optional<String> detailText() const;
  // The first text view of the toolkit; null when there is none.
  std::shared_ptr<NSTextView> textView() const;
  // True when any shown text or label equals `text`.
  bool shows(std::string_view text) const;
  // Without the sidebar, `shows` and `text` are what they were: hiding is the renderer's.
  bool isSidebarVisible() const { return isSidebarVisible_; }

  bool hasButton(std::string_view name) const;
  bool hasToggle(std::string_view name) const;

  // The user's doings. False when there is no such control, or it is disabled.
  bool press(std::string_view button);
  bool flip(std::string_view toggle);
  bool isOn(std::string_view toggle) const;
  // The names of the controls that the keyboard goes through, in reading order.
  std::vector<std::string> focusOrder() const;
  bool search(const String& text);
  bool pick(std::size_t position);
  // The dialog that is up: its title, absent when there is none, and the choice of a button.
  std::optional<std::string> dialog() const;
  bool choose(std::string_view button);
  // The texts of the rows in the popover that is open, absent when none is; and its going.
  std::optional<std::vector<std::string>> popoverRows() const;
  void leavePopover();

  void setVisible(bool isVisible) { graph_.setVisible(isVisible); }
  ViewGraph& graph() { return graph_; }

 private:
  std::string shownTitle() const;

  ViewGraph graph_;
  bool isSidebarVisible_ = true;
  AnyCancellable toggleSidebar_;
};

}  // namespace tarnix::simulated
