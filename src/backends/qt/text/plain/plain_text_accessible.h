#pragma once

#include <QAccessibleWidget>
#include <cstddef>

#include "backends/qt/text/plain/plain_text_pieces.h"

namespace tarnix::qt {

class PlainTextView;

// A PlainTextView as assistive technologies see it: a read-only text, its positions in UTF-16 units of the
// text itself, not of the labels drawn for control characters. Positions are exact. The first megabyte is
// known at once, the rest becomes known while the event loop is idle, and until then the text seems to end
// where the counting has come to. One answer holds at most kLongestAnswer bytes of the text.
class PlainTextAccessible : public QAccessibleWidget, public QAccessibleTextInterface {
 public:
  static constexpr std::size_t kLongestAnswer = 256 * 1024;

  explicit PlainTextAccessible(PlainTextView* view);

  void* interface_cast(QAccessible::InterfaceType type) override;
  QAccessible::State state() const override;
  QString text(QAccessible::Text kind) const override;
  // The viewport and the scroll bar say nothing that the text does not.
  int childCount() const override { return 0; }
  QAccessibleInterface* child(int) const override { return nullptr; }
  int indexOfChild(const QAccessibleInterface*) const override { return -1; }
  QAccessibleInterface* childAt(int, int) const override { return nullptr; }

  void selection(int index, int* start, int* end) const override;
  int selectionCount() const override;
  void addSelection(int start, int end) override;
  void removeSelection(int index) override;
  void setSelection(int index, int start, int end) override;
  int cursorPosition() const override;
  void setCursorPosition(int position) override;

  QString text(int start, int end) const override;
  QString textBeforeOffset(int offset, QAccessible::TextBoundaryType boundary, int* start,
                           int* end) const override;
  QString textAtOffset(int offset, QAccessible::TextBoundaryType boundary, int* start,
                       int* end) const override;
  QString textAfterOffset(int offset, QAccessible::TextBoundaryType boundary, int* start,
                          int* end) const override;
  int characterCount() const override;

  QRect characterRect(int offset) const override;
  int offsetAtPoint(const QPoint& point) const override;
  void scrollToSubstring(int start, int end) override;
  QString attributes(int offset, int* start, int* end) const override;

 private:
  PlainTextView& view() const;
  std::size_t byteAt(int position) const;
  int positionOf(std::size_t byte) const;
  TextRange unitAround(std::size_t byte, QAccessible::TextBoundaryType boundary) const;
  QString answer(TextRange range, int* start, int* end) const;
};

// Makes Qt ask for the interface above. Does nothing when called again.
void installPlainTextAccessibility();

// Tell those who listen, if anyone does.
void announceText(PlainTextView& view);
void announceSelection(PlainTextView& view);

}  // namespace tarnix::qt
