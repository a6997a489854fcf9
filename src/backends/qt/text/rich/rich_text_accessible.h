#pragma once

#include <vector>

#include "backends/qt/text/plain/plain_text_accessible.h"

namespace tarnix::qt {

class RichTextView;

// A RichTextView as assistive technologies see it: its text, and within it the links that can be opened, each
// with its own text as its name, where it leads as its description, and a press that opens it.
class RichTextAccessible : public PlainTextAccessible {
 public:
  explicit RichTextAccessible(RichTextView* view);
  ~RichTextAccessible() override;

  int childCount() const override;
  QAccessibleInterface* child(int index) const override;
  int indexOfChild(const QAccessibleInterface* child) const override;
  QAccessibleInterface* childAt(int x, int y) const override;

 private:
  RichTextView& view() const;

  mutable std::vector<QAccessible::Id> links_;  // As many as were asked for.
};

// Makes Qt ask for the interface above. Does nothing when called again.
void installRichTextAccessibility();

// Tells that a link is where the keyboard is.
void announceLink(RichTextView& view, std::size_t number);

}  // namespace tarnix::qt
