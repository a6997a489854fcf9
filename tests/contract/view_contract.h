#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/swiftui/elements.h"

namespace tarnix::test {

// A window of some renderer that shows one view, which the test changes and lets evaluate again, and what a
// person or an assistive tool finds and does there. Controls are known by the names that assistive tools
// tell.
class ViewStage {
 public:
  struct Row {
    std::string title;
    std::string badge;
    bool isSelected = false;
    friend bool operator==(const Row&, const Row&) = default;
  };

  virtual ~ViewStage() = default;
  // The view is made afresh at each evaluation.
  virtual void show(std::function<View()> view) = 0;
  // Lets what has happened so far have its effects; the view is evaluated again.
  virtual void settle() = 0;

  // A text stands somewhere, or a control has it for its label.
  virtual bool shows(const std::string& text) = 0;
  virtual bool hasButton(const std::string& name) = 0;
  virtual bool hasToggle(const std::string& name) = 0;
  // These are false when there is no such control, or it takes no input.
  virtual bool press(const std::string& button) = 0;
  virtual bool flip(const std::string& toggle) = 0;
  virtual bool isOn(const std::string& toggle) = 0;
  // The names of the buttons and toggles that the keyboard goes through, from the first on.
  virtual std::vector<std::string> focusOrder() = 0;
  virtual bool search(const std::string& text) = 0;
  virtual bool pick(std::size_t row) = 0;
  virtual std::vector<Row> rows() = 0;
  // The text of the one text view; absent when there is none.
  virtual std::optional<std::string> text() = 0;
  // The title of the dialog that is up, and the choice of one of its buttons.
  virtual std::optional<std::string> dialog() = 0;
  virtual bool choose(const std::string& button) = 0;
  // The rows of the list in the popover that is open; absent when none is. And the user's turning elsewhere.
  virtual std::optional<std::vector<std::string>> popoverRows() = 0;
  virtual void leavePopover() = 0;
};

// What every renderer is held to; each renderer's tests instantiate it with a stage of theirs.
class ViewContract : public ::testing::TestWithParam<std::function<std::unique_ptr<ViewStage>()>> {
 protected:
  std::unique_ptr<ViewStage> stage = GetParam()();
};

}  // namespace tarnix::test
