#pragma once

#include <QLineEdit>
#include <functional>
#include <optional>
#include <span>

#include "platform/combine/publisher.h"

namespace tarnix::qt {

class SymbolButton;

// A rounded field with a magnifier in front and, while there is text, a button that clears it. The platform's
// key for finding gives it the focus, Escape clears it.
//
// Copies and pastes by the pasteboard, never by the toolkit's clipboard, and so waits for nobody: what is
// pasted while its owner is still to hand it over arrives when it has come, at the place where the cursor
// was, unless something else is pasted or the field is cleared before. There is no dragging, and the
// selection that a middle click pastes is left alone, since the toolkit does both by waiting.
class SearchField : public QLineEdit {
 public:
  explicit SearchField(QWidget* parent = nullptr);

  QSize sizeHint() const override;
  // Called for the key that leads from the field to what was found.
  void setLeave(std::function<void()> leave) { leave_ = std::move(leave); }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  struct KeyAction;
  static std::span<const KeyAction> keyActions();
  bool editByKey(const QKeyEvent& event);
  void moveByCharacter(int direction, bool isSelecting);
  void moveByWord(int direction, bool isSelecting);
  void copySelection();
  void cutSelection();
  void pasteWhenSettled();
  void insertCopied();
  void followPaste(const QString& text);
  void placeText();

  SymbolButton* clear_;
  std::function<void()> leave_;
  std::optional<int> pastePlace_;  // Where the awaited text goes.
  QString textAtPlace_;            // The text that the place is one of.
  AnyCancellable awaitedPaste_;
};

}  // namespace tarnix::qt
