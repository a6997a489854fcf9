#include "backends/qt/text/plain/plain_text_accessible.h"

#include <QTextBoundaryFinder>
#include <algorithm>
#include <limits>

#include "backends/qt/text/plain/plain_text_decoding.h"
#include "backends/qt/text/plain/plain_text_view.h"

namespace tarnix::qt {
namespace {

// Enough to tell what the new text is about.
constexpr std::size_t kAnnouncedBytes = 4096;

QAccessibleInterface* makeTextAccessible(const QString&, QObject* object) {
  auto* view = dynamic_cast<PlainTextView*>(object);
  return view == nullptr ? nullptr : new PlainTextAccessible(view);
}

QString decodedPart(std::string_view text, TextRange range) {
  return decoded(text.substr(range.begin, range.end - range.begin));
}

// Cut to what one answer may hold, between two characters.
TextRange bounded(std::string_view text, TextRange range, std::size_t limit) {
  return {range.begin, std::min(range.end, codePointStart(text, range.begin + limit))};
}

QTextBoundaryFinder::BoundaryType finderType(QAccessible::TextBoundaryType boundary) {
  switch (boundary) {
    case QAccessible::CharBoundary:
      return QTextBoundaryFinder::Grapheme;
    case QAccessible::WordBoundary:
      return QTextBoundaryFinder::Word;
    default:
      return QTextBoundaryFinder::Sentence;
  }
}

std::size_t bytesOf(std::string_view text, qsizetype units) {
  std::size_t offset = 0;
  while (units > 0 && offset < text.size()) {
    const CodePoint point = codePointAt(text, offset);
    units -= static_cast<qsizetype>(utf16Length(point.value));
    offset += point.length;
  }
  return offset;
}

// The character, word or sentence around `offset` within `range`, which is short.
TextRange unitWithin(std::string_view text, TextRange range, std::size_t offset,
                     QTextBoundaryFinder::BoundaryType type) {
  const std::string_view bytes = text.substr(range.begin, range.end - range.begin);
  const auto units = static_cast<qsizetype>(utf16Length(bytes.substr(0, offset - range.begin)));
  const QString shown = decoded(bytes);
  QTextBoundaryFinder finder(type, shown);
  finder.setPosition(units);
  const qsizetype begin = finder.isAtBoundary() ? units : std::max<qsizetype>(finder.toPreviousBoundary(), 0);
  finder.setPosition(begin);
  const qsizetype end = std::max(finder.toNextBoundary(), begin);
  return {range.begin + bytesOf(bytes, begin), range.begin + bytesOf(bytes, end)};
}

}  // namespace

PlainTextAccessible::PlainTextAccessible(PlainTextView* view)
    : QAccessibleWidget(view, QAccessible::EditableText) {}

PlainTextView& PlainTextAccessible::view() const { return static_cast<PlainTextView&>(*widget()); }

void* PlainTextAccessible::interface_cast(QAccessible::InterfaceType type) {
  if (type == QAccessible::TextInterface) return static_cast<QAccessibleTextInterface*>(this);
  return QAccessibleWidget::interface_cast(type);
}

QAccessible::State PlainTextAccessible::state() const {
  QAccessible::State state = QAccessibleWidget::state();
  state.readOnly = true;
  state.multiLine = true;
  state.selectableText = true;
  return state;
}

QString PlainTextAccessible::text(QAccessible::Text kind) const {
  if (kind != QAccessible::Value) return QAccessibleWidget::text(kind);
  return answer({0, view().text().size()}, nullptr, nullptr);
}

std::size_t PlainTextAccessible::byteAt(int position) const {
  if (position < 0) return view().positions().countedBytes();
  return view().positions().offsetAt(static_cast<std::size_t>(position));
}

int PlainTextAccessible::positionOf(std::size_t byte) const {
  const std::size_t units = view().positions().unitsBefore(byte);
  return static_cast<int>(std::min<std::size_t>(units, std::numeric_limits<int>::max()));
}

QString PlainTextAccessible::answer(TextRange range, int* start, int* end) const {
  const TextRange given = bounded(view().text(), range, kLongestAnswer);
  if (start != nullptr) *start = positionOf(given.begin);
  if (end != nullptr) *end = positionOf(given.end);
  return decodedPart(view().text(), given);
}

void PlainTextAccessible::selection(int index, int* start, int* end) const {
  const TextRange range = index == 0 ? view().selection() : TextRange{};
  *start = positionOf(range.begin);
  *end = positionOf(range.end);
}

int PlainTextAccessible::selectionCount() const { return view().selection().isEmpty() ? 0 : 1; }

void PlainTextAccessible::addSelection(int start, int end) { setSelection(0, start, end); }

void PlainTextAccessible::removeSelection(int index) {
  if (index == 0) view().select(view().cursor(), view().cursor());
}

void PlainTextAccessible::setSelection(int index, int start, int end) {
  if (index == 0) view().select(byteAt(start), byteAt(end));
}

int PlainTextAccessible::cursorPosition() const { return positionOf(view().cursor()); }

void PlainTextAccessible::setCursorPosition(int position) {
  view().select(byteAt(position), byteAt(position));
  view().reveal(byteAt(position));
}

int PlainTextAccessible::characterCount() const { return positionOf(view().text().size()); }

QString PlainTextAccessible::text(int start, int end) const {
  const std::size_t begin = byteAt(std::max(start, 0));
  return answer({begin, std::max(begin, byteAt(end))}, nullptr, nullptr);
}

// Lines are the rows on screen, paragraphs the pieces that are laid out at once.
TextRange PlainTextAccessible::unitAround(std::size_t byte, QAccessible::TextBoundaryType boundary) const {
  const std::string_view text = view().text();
  const TextPiece piece = pieceAt(text, byte);
  const TextRange whole{piece.begin, std::min(piece.next, text.size())};
  switch (boundary) {
    case QAccessible::NoBoundary:
      return {0, text.size()};
    case QAccessible::ParagraphBoundary:
      return whole;
    case QAccessible::LineBoundary:
      return view().rowAround(byte);
    default:
      return unitWithin(text, whole, byte, finderType(boundary));
  }
}

QString PlainTextAccessible::textAtOffset(int offset, QAccessible::TextBoundaryType boundary, int* start,
                                          int* end) const {
  return answer(unitAround(byteAt(offset), boundary), start, end);
}

QString PlainTextAccessible::textBeforeOffset(int offset, QAccessible::TextBoundaryType boundary, int* start,
                                              int* end) const {
  const std::size_t here = unitAround(byteAt(offset), boundary).begin;
  const std::size_t before = here == 0 ? 0 : codePointStart(view().text(), here - 1);
  return answer(here == 0 ? TextRange{} : unitAround(before, boundary), start, end);
}

QString PlainTextAccessible::textAfterOffset(int offset, QAccessible::TextBoundaryType boundary, int* start,
                                             int* end) const {
  const std::size_t behind = unitAround(byteAt(offset), boundary).end;
  const bool isEnd = behind >= view().text().size();
  return answer(isEnd ? TextRange{behind, behind} : unitAround(behind, boundary), start, end);
}

QRect PlainTextAccessible::characterRect(int offset) const {
  const std::size_t byte = byteAt(offset);
  const QRect caret = view().caretRect(byte);
  if (caret.isNull()) return QRect();
  const QRect following = view().caretRect(unitAround(byte, QAccessible::CharBoundary).end);
  const bool isSameRow = following.top() == caret.top();
  const QRect character = isSameRow ? caret.united(following) : caret;
  return character.translated(view().viewport()->mapToGlobal(QPoint()));
}

int PlainTextAccessible::offsetAtPoint(const QPoint& point) const {
  const QPoint inside = view().viewport()->mapFromGlobal(point);
  return view().viewport()->rect().contains(inside) ? positionOf(view().characterAt(inside)) : -1;
}

void PlainTextAccessible::scrollToSubstring(int start, int end) {
  view().reveal(byteAt(end));
  view().reveal(byteAt(start));
}

QString PlainTextAccessible::attributes(int offset, int* start, int* end) const {
  const auto [look, range] = view().lookAt(byteAt(offset));
  *start = positionOf(range.begin);
  *end = positionOf(range.end);
  return look;
}

void installPlainTextAccessibility() { QAccessible::installFactory(makeTextAccessible); }

void announceText(PlainTextView& view) {
  if (!QAccessible::isActive()) return;
  const std::string_view text = view.text();
  QAccessibleTextInsertEvent event(&view, 0,
                                   decodedPart(text, bounded(text, {0, text.size()}, kAnnouncedBytes)));
  QAccessible::updateAccessibility(&event);
}

void announceSelection(PlainTextView& view) {
  if (!QAccessible::isActive()) return;
  const Utf16Index& positions = view.positions();
  const auto begin = static_cast<int>(positions.unitsBefore(view.selection().begin));
  const auto end = static_cast<int>(positions.unitsBefore(view.selection().end));
  QAccessibleTextSelectionEvent event(&view, begin, end);
  QAccessible::updateAccessibility(&event);
}

}  // namespace tarnix::qt
