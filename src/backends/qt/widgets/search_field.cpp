#include "backends/qt/widgets/search_field.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QShortcut>
#include <algorithm>
#include <span>
#include <utility>

#include "backends/qt/theme/symbols.h"
#include "backends/qt/theme/text.h"
#include "backends/qt/widgets/copied_text.h"
#include "backends/qt/widgets/symbol_button.h"
#include "platform/appkit/pasteboard.h"

namespace tarnix::qt {
namespace {

constexpr int kHeight = 30;
constexpr int kLensSide = 14;
constexpr int kInset = 9;
constexpr int kClearSide = 13;

}  // namespace

SearchField::SearchField(QWidget* parent) : QLineEdit(parent), clear_(new SymbolButton(this)) {
  setAccessibleName(localized("Search"));
  setAccessibleDescription(localized("Filters the list of clips"));
  setMinimumHeight(kHeight);
  placeText();
  clear_->setSymbol(QStringLiteral("xmark.circle"), kClearSide);
  clear_->setTitle(localized("Clear search"), false);
  clear_->setForegroundRole(QPalette::PlaceholderText);
  clear_->setFocusPolicy(Qt::NoFocus);
  clear_->setCursor(Qt::ArrowCursor);
  clear_->hide();
  connect(clear_, &QAbstractButton::clicked, this, &QLineEdit::clear);
  connect(this, &QLineEdit::textChanged, clear_,
          [this](const QString& text) { clear_->setVisible(!text.isEmpty()); });
  setAcceptDrops(false);
  setDragEnabled(false);
  connect(this, &QLineEdit::textChanged, this, &SearchField::followPaste);
  auto* const find = new QShortcut(QKeySequence::Find, this);
  connect(find, &QShortcut::activated, this, [this] {
    setFocus(Qt::ShortcutFocusReason);
    selectAll();
  });
}

// The margins of a line edit stay on their sides when the desktop reads from the right, and what it shows
// goes by the direction of the keyboard.
void SearchField::placeText() {
  constexpr int kLeading = kInset + kLensSide + 4;
  constexpr int kTrailing = kHeight - 2;
  const bool isMirrored = isRightToLeft();
  setTextMargins(isMirrored ? kTrailing : kLeading, 0, isMirrored ? kLeading : kTrailing, 0);
  // The thin space keeps the caret off the placeholder; the mark says on which side, whatever
  // the language of the word.
  const QString space = QString::fromUtf16(isMirrored ? u"\u200F\u2009" : u"\u2009");
  setPlaceholderText(space + localized("Search"));
  setAlignment(isMirrored ? Qt::AlignRight | Qt::AlignAbsolute : Qt::AlignLeading);
}

void SearchField::changeEvent(QEvent* event) {
  QLineEdit::changeEvent(event);
  if (event->type() == QEvent::LayoutDirectionChange) placeText();
}

QSize SearchField::sizeHint() const {
  return {QLineEdit::sizeHint().width(), qMax(kHeight, fontMetrics().height() + 12)};
}

void SearchField::paintEvent(QPaintEvent* event) {
  QLineEdit::paintEvent(event);
  QPainter painter(this);
  const int left = isRightToLeft() ? width() - kInset - kLensSide : kInset;
  paintSymbol(painter, QRectF(left, (height() - kLensSide) / 2.0, kLensSide, kLensSide),
              QStringLiteral("magnifyingglass"), monochrome(palette().color(QPalette::PlaceholderText)));
}

void SearchField::resizeEvent(QResizeEvent* event) {
  QLineEdit::resizeEvent(event);
  const QSize size = clear_->sizeHint();
  const int left = isRightToLeft() ? 2 : width() - size.width() - 2;
  clear_->setGeometry(QRect(QPoint(left, (height() - size.height()) / 2), size));
}

void SearchField::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape && !text().isEmpty()) {
    clear();
  } else if (event->key() == Qt::Key_Down && leave_) {
    leave_();
  } else if (!editByKey(*event)) {
    const bool isWriting = !event->text().isEmpty() && event->text().front().isPrint();
    isWriting ? QLineEdit::keyPressEvent(event) : event->ignore();
  }
}

// What a key does to the text, by the platform's meaning of the key.
struct SearchField::KeyAction {
  QKeySequence::StandardKey key;
  void (*act)(SearchField&);
};

// The line edit's own handling of these keys uses the toolkit's clipboard: for what is copied and pasted, and
// to offer what a key has selected to a middle click.
std::span<const SearchField::KeyAction> SearchField::keyActions() {
  using Field = SearchField&;
  static constexpr KeyAction kActions[] = {
      {QKeySequence::Copy, [](Field field) { field.copySelection(); }},
      {QKeySequence::Cut, [](Field field) { field.cutSelection(); }},
      {QKeySequence::Paste, [](Field field) { field.pasteWhenSettled(); }},
      {QKeySequence::Undo, [](Field field) { field.undo(); }},
      {QKeySequence::Redo, [](Field field) { field.redo(); }},
      {QKeySequence::SelectAll, [](Field field) { field.selectAll(); }},
      {QKeySequence::MoveToNextChar, [](Field field) { field.moveByCharacter(1, false); }},
      {QKeySequence::SelectNextChar, [](Field field) { field.moveByCharacter(1, true); }},
      {QKeySequence::MoveToPreviousChar, [](Field field) { field.moveByCharacter(-1, false); }},
      {QKeySequence::SelectPreviousChar, [](Field field) { field.moveByCharacter(-1, true); }},
      {QKeySequence::MoveToNextWord, [](Field field) { field.moveByWord(1, false); }},
      {QKeySequence::SelectNextWord, [](Field field) { field.moveByWord(1, true); }},
      {QKeySequence::MoveToPreviousWord, [](Field field) { field.moveByWord(-1, false); }},
      {QKeySequence::SelectPreviousWord, [](Field field) { field.moveByWord(-1, true); }},
      {QKeySequence::MoveToStartOfLine, [](Field field) { field.home(false); }},
      {QKeySequence::MoveToStartOfDocument, [](Field field) { field.home(false); }},
      {QKeySequence::SelectStartOfLine, [](Field field) { field.home(true); }},
      {QKeySequence::SelectStartOfDocument, [](Field field) { field.home(true); }},
      {QKeySequence::MoveToEndOfLine, [](Field field) { field.end(false); }},
      {QKeySequence::MoveToEndOfDocument, [](Field field) { field.end(false); }},
      {QKeySequence::SelectEndOfLine, [](Field field) { field.end(true); }},
      {QKeySequence::SelectEndOfDocument, [](Field field) { field.end(true); }},
      {QKeySequence::Delete, [](Field field) { field.del(); }},
      {QKeySequence::DeleteEndOfWord, [](Field field) { field.cursorWordForward(true), field.del(); }},
      {QKeySequence::DeleteStartOfWord, [](Field field) { field.cursorWordBackward(true), field.del(); }},
      {QKeySequence::DeleteEndOfLine, [](Field field) { field.end(true), field.del(); }},
      {QKeySequence::DeleteCompleteLine, [](Field field) { field.clear(); }},
  };
  return kActions;
}

// False for a key that writes something. A key that means nothing here, as each modifier does by itself, is
// left to others.
bool SearchField::editByKey(const QKeyEvent& event) {
  const bool isOfSelection =
      event.key() == Qt::Key_Insert && event.modifiers() == (Qt::ControlModifier | Qt::ShiftModifier);
  if (isOfSelection) return true;
  if (event.key() == Qt::Key_Backspace && !event.modifiers().testFlag(Qt::ControlModifier)) {
    backspace();
    return true;
  }
  for (const KeyAction& each : keyActions()) {
    if (!event.matches(each.key)) continue;
    each.act(*this);
    return true;
  }
  return false;
}

// To the right, or to the left, which is backwards where the desktop reads from the right.
void SearchField::moveByCharacter(int direction, bool isSelecting) {
  if (hasSelectedText() && !isSelecting) {
    setCursorPosition((direction > 0) != isRightToLeft() ? selectionEnd() : selectionStart());
  } else {
    cursorForward(isSelecting, isRightToLeft() ? -direction : direction);
  }
}

void SearchField::moveByWord(int direction, bool isSelecting) {
  (direction > 0) != isRightToLeft() ? cursorWordForward(isSelecting) : cursorWordBackward(isSelecting);
}

// The line edit would offer what is selected to a middle click elsewhere, and paste by one.
void SearchField::mouseReleaseEvent(QMouseEvent* event) { event->accept(); }

void SearchField::contextMenuEvent(QContextMenuEvent* event) {
  auto* const menu = new QMenu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  const auto add = [menu](LocalizedKey title, QKeySequence::StandardKey key, bool isEnabled, auto action) {
    QAction* const added = menu->addAction(localized(title));
    added->setShortcut(key);
    added->setEnabled(isEnabled);
    connect(added, &QAction::triggered, menu, action);
  };
  add("&Undo", QKeySequence::Undo, isUndoAvailable(), [this] { undo(); });
  add("&Redo", QKeySequence::Redo, isRedoAvailable(), [this] { redo(); });
  menu->addSeparator();
  add("Cu&t", QKeySequence::Cut, hasSelectedText(), [this] { cutSelection(); });
  add("&Copy", QKeySequence::Copy, hasSelectedText(), [this] { copySelection(); });
  add("&Paste", QKeySequence::Paste, true, [this] { pasteWhenSettled(); });
  add("Delete", QKeySequence::Delete, hasSelectedText(), [this] { del(); });
  menu->addSeparator();
  add("Select All", QKeySequence::SelectAll, !text().isEmpty(), [this] { selectAll(); });
  menu->popup(event->globalPos());
}

void SearchField::copySelection() {
  if (hasSelectedText()) copyToPasteboard(fromQString(selectedText()));
}

void SearchField::cutSelection() {
  copySelection();
  if (hasSelectedText()) del();
}

void SearchField::pasteWhenSettled() {
  pastePlace_ = cursorPosition();
  textAtPlace_ = text();
  awaitedPaste_ = NSPasteboard::generalPasteboard()->whenSettled([this] { insertCopied(); });
}

// The cursor ends behind what was inserted if it was there, and else stays in its text.
void SearchField::insertCopied() {
  if (!pastePlace_) return;
  const int place = *std::exchange(pastePlace_, std::nullopt);
  const QString copied = copiedText(maxLength());
  if (copied.isEmpty()) return;
  if (cursorPosition() == place) return insert(copied);
  const int cursor = cursorPosition();
  const int before = static_cast<int>(text().size());
  setCursorPosition(place);
  insert(copied);
  const int growth = static_cast<int>(text().size()) - before;
  setCursorPosition(cursor + (cursor > place ? growth : 0));
}

// What is edited in front of the place moves it; what empties the field ends the wait.
void SearchField::followPaste(const QString& text) {
  if (!pastePlace_) return;
  if (text.isEmpty() && !textAtPlace_.isEmpty()) return pastePlace_.reset();
  const auto changed = std::mismatch(text.begin(), text.end(), textAtPlace_.begin(), textAtPlace_.end());
  const auto firstChange = static_cast<int>(changed.first - text.begin());
  const auto growth = static_cast<int>(text.size() - textAtPlace_.size());
  if (firstChange < *pastePlace_) pastePlace_ = std::max(firstChange, *pastePlace_ + growth);
  textAtPlace_ = text;
}

}  // namespace tarnix::qt
