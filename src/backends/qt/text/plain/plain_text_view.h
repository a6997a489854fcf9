#pragma once

#include <QAbstractScrollArea>
#include <QBasicTimer>
#include <optional>
#include <utility>

#include "backends/qt/text/plain/plain_text_flow.h"
#include "backends/qt/text/plain/plain_text_index.h"
#include "backends/qt/text/plain/plain_text_motion.h"
#include "platform/foundation/string.h"

namespace tarnix::qt {

// A read-only view of a text of any size. It shares the bytes of the text and lays out what is visible, so
// that setting, showing and scrolling cost the same for a line and for 100 MB. Places in the text are byte
// offsets. Colours come from the palette, the font is that of the widget.
class PlainTextView : public QAbstractScrollArea {
 public:
  explicit PlainTextView(QWidget* parent = nullptr);

  // Starts at the top with nothing selected, unless the text equals the one on show: then both stay. Texts of
  // more than 32 MB are taken for equal when size and the 16 MB at either end are; the bytes on show are the
  // new ones in any case.
  virtual void setText(String text);
  const String& text() const { return flow_.text(); }
  // Shows no more rows than these; 0, and more than `TextFlow::kMostLimitedRows`, is no limit.
  void setRowLimit(std::size_t rows);

  // Whether mouse and keys select; they do unless told otherwise. Without it nothing is copied either.
  void setSelectable(bool isSelectable);
  bool isSelectable() const { return isSelectable_; }
  TextRange selection() const { return selection_.range(); }
  // The end that moves with Shift and the arrow keys.
  std::size_t cursor() const { return selection_.cursor(); }
  // Also where nobody else can.
  void select(std::size_t anchor, std::size_t cursor);
  void selectAll() { select(0, text().size()); }
  // Shares the bytes of the text when all of it is selected.
  String selectedText() const;
  // Puts the selected text, unless it is empty, on the pasteboard.
  void copy();

  // Scrolls as little as needed.
  void reveal(std::size_t offset);
  // The rows in sight, the cut ones at the edges included.
  TextRange visibleRange() const;
  // The place between two characters, and the character, nearest to a point.
  std::size_t offsetAt(QPoint viewportPoint) const;
  std::size_t characterAt(QPoint viewportPoint) const;
  TextRange rowAround(std::size_t offset) const { return flow_.layoutAt(offset)->rowAround(offset); }
  // In viewport coordinates; empty when out of sight.
  QRect caretRect(std::size_t offset) const;

  // How the character at `offset` looks, and those around it that look the same, in the words of assistive
  // tools; empty for a text without a look of its own.
  virtual std::pair<QString, TextRange> lookAt(std::size_t) const { return {{}, {0, text().size()}}; }

  // Positions in UTF-16 units. The first call for a text starts the counting, which goes on in slices while
  // the event loop has nothing else to do, and then stops for good.
  const Utf16Index& positions();
  std::size_t laidOutBytes() const { return flow_.laidOutBytes(); }

 protected:
  // Another source of the text on show; another text starts at the top with nothing selected.
  void setPieces(std::shared_ptr<const PieceSource> pieces, bool isOtherText);
  virtual LayoutStyle layoutStyle() const;
  void layOut();

  bool event(QEvent* event) override;
  void changeEvent(QEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void scrollContentsBy(int dx, int dy) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void timerEvent(QTimerEvent* event) override;

 private:
  enum class Granularity { character, word, line };

  void setTop(FlowPosition top);
  void scrollBy(int pixels);
  void performScroll(int sliderAction);
  void adjustScrollBar();
  int barValue(FlowPosition position) const;
  int pageHeight() const;

  bool scrollByKey(const QKeyEvent& event);
  bool selectByKey(const QKeyEvent& event);
  void moveCursor(Motion motion);
  void setSelection(TextSelection selection);
  void startSelection(QPoint point, Granularity granularity);
  void dragTo(QPoint point);
  TextRange unitAt(QPoint point) const;
  bool isThirdClick(const QMouseEvent& event) const;

  TextFlow flow_;
  FlowPosition top_;
  std::size_t topRow_ =
      0;  // First byte of the row at the upper edge since the last scroll, kept over resizing.
  TextSelection selection_;
  Granularity granularity_ = Granularity::character;
  std::optional<int> motionX_;
  Utf16Index index_;
  QBasicTimer indexTimer_;
  QBasicTimer autoscroll_;
  QPoint dragPoint_;
  double wheelRest_ = 0;
  double unitsPerByte_ = 1;
  bool isAdjustingBar_ = false;
  std::size_t rowLimit_ = 0;
  bool isSelectable_ = true;
  quint64 doubleClickTime_ = 0;
  QPoint doubleClickPoint_;
};

}  // namespace tarnix::qt
