#include "backends/qt/widgets/text_editor.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <utility>

#include "backends/qt/theme/text.h"
#include "backends/qt/widgets/copied_text.h"
#include "platform/appkit/pasteboard.h"

namespace tarnix::qt {
namespace {

constexpr double kMargin = 9;
constexpr int kMostPasted = 16 * 1024 * 1024;  // In UTF-16 units.

}  // namespace

TextEditor::TextEditor(QWidget* parent) : QTextEdit(parent) {
  setFrameShape(QFrame::NoFrame);
  setAcceptDrops(false);
  setAcceptRichText(false);
  setTabChangesFocus(false);
  document()->setDocumentMargin(kMargin);
  connect(this, &QTextEdit::textChanged, this, [this] {
    if (!isSetting_) noteEdited();
  });
}

void TextEditor::setText(const String& text) {
  if (text == shown_) return;
  shown_ = text;
  change([&] { setPlainText(toQString(text)); });
}

void TextEditor::noteEdited() {
  shown_ = fromQString(toPlainText());
  if (edited_) edited_(shown_);
}

void TextEditor::change(const std::function<void()>& change) {
  const QScopedValueRollback<bool> guard(isSetting_, true);
  change();
}

void TextEditor::setFont(const QFont& font) {
  if (font != this->font()) QTextEdit::setFont(font);
}

void TextEditor::keyPressEvent(QKeyEvent* event) {
  const QString text = event->text();
  if (editByKey(*event)) return event->accept();
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) return write(QStringLiteral("\n"));
  const bool isWriting = !text.isEmpty() && (text.front().isPrint() || text.front() == u'\t');
  isWriting ? write(text) : event->ignore();
}

void TextEditor::write(const QString& text) {
  textCursor().insertText(text);
  ensureCursorVisible();
}

// What a key does to the text, by the platform's meaning of the key.
struct TextEditor::KeyAction {
  QKeySequence::StandardKey key;
  void (*act)(TextEditor&);
};

// The toolkit's own handling of these keys uses its clipboard: for what is copied and pasted, and to offer
// what a key has selected to a middle click.
std::span<const TextEditor::KeyAction> TextEditor::keyActions() {
  using Editor = TextEditor&;
  using Cursor = QTextCursor;
  static constexpr KeyAction kActions[] = {
      {QKeySequence::Copy, [](Editor editor) { editor.copySelection(); }},
      {QKeySequence::Cut, [](Editor editor) { editor.cutSelection(); }},
      {QKeySequence::Paste, [](Editor editor) { editor.pasteWhenSettled(); }},
      {QKeySequence::Undo, [](Editor editor) { editor.undo(); }},
      {QKeySequence::Redo, [](Editor editor) { editor.redo(); }},
      {QKeySequence::SelectAll, [](Editor editor) { editor.selectAll(); }},
      {QKeySequence::MoveToNextChar, [](Editor editor) { editor.move(Cursor::Right, false); }},
      {QKeySequence::SelectNextChar, [](Editor editor) { editor.move(Cursor::Right, true); }},
      {QKeySequence::MoveToPreviousChar, [](Editor editor) { editor.move(Cursor::Left, false); }},
      {QKeySequence::SelectPreviousChar, [](Editor editor) { editor.move(Cursor::Left, true); }},
      {QKeySequence::MoveToNextWord, [](Editor editor) { editor.move(Cursor::WordRight, false); }},
      {QKeySequence::SelectNextWord, [](Editor editor) { editor.move(Cursor::WordRight, true); }},
      {QKeySequence::MoveToPreviousWord, [](Editor editor) { editor.move(Cursor::WordLeft, false); }},
      {QKeySequence::SelectPreviousWord, [](Editor editor) { editor.move(Cursor::WordLeft, true); }},
      {QKeySequence::MoveToNextLine, [](Editor editor) { editor.move(Cursor::Down, false); }},
      {QKeySequence::SelectNextLine, [](Editor editor) { editor.move(Cursor::Down, true); }},
      {QKeySequence::MoveToPreviousLine, [](Editor editor) { editor.move(Cursor::Up, false); }},
      {QKeySequence::SelectPreviousLine, [](Editor editor) { editor.move(Cursor::Up, true); }},
      {QKeySequence::MoveToNextPage, [](Editor editor) { editor.movePage(Cursor::Down, false); }},
      {QKeySequence::SelectNextPage, [](Editor editor) { editor.movePage(Cursor::Down, true); }},
      {QKeySequence::MoveToPreviousPage, [](Editor editor) { editor.movePage(Cursor::Up, false); }},
      {QKeySequence::SelectPreviousPage, [](Editor editor) { editor.movePage(Cursor::Up, true); }},
      {QKeySequence::MoveToStartOfLine, [](Editor editor) { editor.move(Cursor::StartOfLine, false); }},
      {QKeySequence::SelectStartOfLine, [](Editor editor) { editor.move(Cursor::StartOfLine, true); }},
      {QKeySequence::MoveToEndOfLine, [](Editor editor) { editor.move(Cursor::EndOfLine, false); }},
      {QKeySequence::SelectEndOfLine, [](Editor editor) { editor.move(Cursor::EndOfLine, true); }},
      {QKeySequence::MoveToStartOfDocument, [](Editor editor) { editor.move(Cursor::Start, false); }},
      {QKeySequence::SelectStartOfDocument, [](Editor editor) { editor.move(Cursor::Start, true); }},
      {QKeySequence::MoveToEndOfDocument, [](Editor editor) { editor.move(Cursor::End, false); }},
      {QKeySequence::SelectEndOfDocument, [](Editor editor) { editor.move(Cursor::End, true); }},
      {QKeySequence::Delete, [](Editor editor) { editor.remove(Cursor::NextCharacter); }},
      {QKeySequence::DeleteEndOfWord, [](Editor editor) { editor.remove(Cursor::NextWord); }},
      {QKeySequence::DeleteStartOfWord, [](Editor editor) { editor.remove(Cursor::PreviousWord); }},
      {QKeySequence::DeleteEndOfLine, [](Editor editor) { editor.remove(Cursor::EndOfBlock); }},
  };
  return kActions;
}

bool TextEditor::editByKey(const QKeyEvent& event) {
  const bool isOfSelection =
      event.key() == Qt::Key_Insert && event.modifiers() == (Qt::ControlModifier | Qt::ShiftModifier);
  if (isOfSelection) return true;
  // It is bound to nothing here.
  const bool isBackspace = event.key() == Qt::Key_Backspace && (event.modifiers() & ~Qt::ShiftModifier) == 0;
  if (isBackspace) {
    remove(QTextCursor::PreviousCharacter);
    return true;
  }
  for (const KeyAction& each : keyActions()) {
    if (!event.matches(each.key)) continue;
    each.act(*this);
    return true;
  }
  return false;
}

void TextEditor::move(QTextCursor::MoveOperation operation, bool isSelecting) {
  QTextCursor cursor = textCursor();
  cursor.movePosition(operation, isSelecting ? QTextCursor::KeepAnchor : QTextCursor::MoveAnchor);
  setTextCursor(cursor);
}

void TextEditor::movePage(QTextCursor::MoveOperation operation, bool isSelecting) {
  const int rows = std::max(1, viewport()->height() / std::max(1, cursorRect().height()) - 1);
  QTextCursor cursor = textCursor();
  cursor.movePosition(operation, isSelecting ? QTextCursor::KeepAnchor : QTextCursor::MoveAnchor, rows);
  setTextCursor(cursor);
}

void TextEditor::remove(QTextCursor::MoveOperation operation) {
  QTextCursor cursor = textCursor();
  if (!cursor.hasSelection()) cursor.movePosition(operation, QTextCursor::KeepAnchor);
  cursor.removeSelectedText();
  setTextCursor(cursor);
}

void TextEditor::placeCursor(QPoint point, bool isSelecting) {
  QTextCursor cursor = textCursor();
  cursor.setPosition(cursorForPosition(point).position(),
                     isSelecting ? QTextCursor::KeepAnchor : QTextCursor::MoveAnchor);
  setTextCursor(cursor);
}

// The toolkit's own mouse handling offers what is selected to a middle click elsewhere, pastes by one, and
// drags.
void TextEditor::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return event->accept();
  placeCursor(event->position().toPoint(), event->modifiers().testFlag(Qt::ShiftModifier));
}

void TextEditor::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return event->accept();
  QTextCursor cursor = cursorForPosition(event->position().toPoint());
  cursor.select(QTextCursor::WordUnderCursor);
  setTextCursor(cursor);
}

void TextEditor::mouseMoveEvent(QMouseEvent* event) {
  if (event->buttons().testFlag(Qt::LeftButton)) placeCursor(event->position().toPoint(), true);
}

void TextEditor::mouseReleaseEvent(QMouseEvent* event) { event->accept(); }

void TextEditor::contextMenuEvent(QContextMenuEvent* event) {
  auto* const menu = new QMenu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  const auto add = [menu](LocalizedKey title, QKeySequence::StandardKey key, bool isEnabled, auto action) {
    QAction* const added = menu->addAction(localized(title));
    added->setShortcut(key);
    added->setEnabled(isEnabled);
    connect(added, &QAction::triggered, menu, action);
  };
  const bool isSelected = textCursor().hasSelection();
  add("&Undo", QKeySequence::Undo, document()->isUndoAvailable(), [this] { undo(); });
  add("&Redo", QKeySequence::Redo, document()->isRedoAvailable(), [this] { redo(); });
  menu->addSeparator();
  add("Cu&t", QKeySequence::Cut, isSelected, [this] { cutSelection(); });
  add("&Copy", QKeySequence::Copy, isSelected, [this] { copySelection(); });
  add("&Paste", QKeySequence::Paste, true, [this] { pasteWhenSettled(); });
  add("Delete", QKeySequence::Delete, isSelected, [this] { remove(QTextCursor::NoMove); });
  menu->addSeparator();
  add("Select All", QKeySequence::SelectAll, !document()->isEmpty(), [this] { selectAll(); });
  menu->popup(event->globalPos());
}

void TextEditor::copySelection() {
  if (!textCursor().hasSelection()) return;
  QString text = textCursor().selectedText();
  text.replace(QChar::ParagraphSeparator, u'\n');
  copyToPasteboard(fromQString(text));
}

void TextEditor::cutSelection() {
  copySelection();
  remove(QTextCursor::NoMove);
}

void TextEditor::pasteWhenSettled() {
  pastePlace_ = textCursor();
  awaitedPaste_ = NSPasteboard::generalPasteboard()->whenSettled([this] {
    auto place = std::exchange(pastePlace_, std::nullopt);
    const QString copied = copiedText(kMostPasted);
    if (place && !copied.isEmpty()) place->insertText(copied);
    ensureCursorVisible();
  });
}

}  // namespace tarnix::qt
