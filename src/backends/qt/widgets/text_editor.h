#pragma once

#include <QTextEdit>
#include <functional>
#include <optional>
#include <span>

#include "platform/combine/publisher.h"
#include "platform/foundation/string.h"

namespace tarnix::qt {

// A text to write in. Copies and pastes by the pasteboard, never by the toolkit's clipboard, and so
// waits for nobody: what is pasted while its owner is still to hand it over arrives when it has come, where
// the cursor was then. There is no dragging, and a middle click pastes nothing.
class TextEditor : public QTextEdit {
 public:
  explicit TextEditor(QWidget* parent = nullptr);

  // What is undone, selected and in sight stays when the text is the same. Characters that the toolkit has no
  // place for are lost: it has one kind of line break.
  void setText(const String& text);
  // Called with what the user has made of the text.
  void setEdited(std::function<void(const String&)> edited) { edited_ = std::move(edited); }
  void setFont(const QFont& font);

 protected:
  // The user has changed the text.
  virtual void noteEdited();
  // Changes the text without anybody's being told.
  void change(const std::function<void()>& change);
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  struct KeyAction;
  static std::span<const KeyAction> keyActions();
  bool editByKey(const QKeyEvent& event);
  void write(const QString& text);
  void move(QTextCursor::MoveOperation operation, bool isSelecting);
  void movePage(QTextCursor::MoveOperation operation, bool isSelecting);
  void remove(QTextCursor::MoveOperation operation);
  void placeCursor(QPoint point, bool isSelecting);
  void copySelection();
  void cutSelection();
  void pasteWhenSettled();

  std::function<void(const String&)> edited_;
  String shown_;
  bool isSetting_ = false;
  std::optional<QTextCursor> pastePlace_;  // Moves with what is written before it.
  AnyCancellable awaitedPaste_;
};

}  // namespace tarnix::qt
