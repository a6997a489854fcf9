#include "backends/qt/text/plain/plain_text_layout.h"

#include <QFontInfo>
#include <QFontMetricsF>
#include <QPainter>
#include <QPalette>
#include <QTextBoundaryFinder>
#include <QTextOption>
#include <algorithm>
#include <cmath>
#include <utility>

#include "backends/qt/text/plain/plain_text_drawn.h"

namespace tarnix::qt {
namespace {

constexpr double kLineSpacing = 1.5;  // In ems; a font that needs more gets it.
constexpr int kTabSpaces = 8;
constexpr qsizetype kLongestWord = 512;
constexpr QChar kFirstMark(0x300);

QTextOption optionFor(const QString& text, const QFont& font) {
  const bool isRightToLeft = text.isRightToLeft();
  QTextOption option(isRightToLeft ? Qt::AlignRight | Qt::AlignAbsolute : Qt::AlignLeft | Qt::AlignAbsolute);
  option.setTextDirection(isRightToLeft ? Qt::RightToLeft : Qt::LeftToRight);
  option.setWrapMode(hasEndlessWord(text) ? QTextOption::WrapAnywhere
                                          : QTextOption::WrapAtWordBoundaryOrAnywhere);
  option.setTabStopDistance(kTabSpaces * QFontMetricsF(font).horizontalAdvance(QLatin1Char(' ')));
  return option;
}

}  // namespace

bool hasEndlessWord(const QString& text) {
  qsizetype run = 0;
  for (const QChar character : text) {
    const bool isOfWord =
        (character > u' ' && character < kFirstMark) || character == QChar::ReplacementCharacter;
    run = isOfWord ? run + 1 : 0;
    if (run > kLongestWord) return true;
  }
  return false;
}

std::pair<int, int> wordIn(const QString& text, int index) {
  QTextBoundaryFinder finder(QTextBoundaryFinder::Word, text);
  finder.setPosition(std::min<qsizetype>(index + 1, text.size()));
  const auto begin = std::max<qsizetype>(finder.toPreviousBoundary(), 0);
  const auto end = std::max(finder.toNextBoundary(), begin);
  return {static_cast<int>(begin), static_cast<int>(end)};
}

int rowHeight(const QFont& font) {
  const double comfortable = QFontInfo(font).pixelSize() * kLineSpacing;
  return static_cast<int>(std::ceil(std::max(comfortable, QFontMetricsF(font).height())));
}

PlainPieceLayout::PlainPieceLayout(std::string_view text, const TextPiece& piece, const LayoutStyle& style)
    : PieceLayout(piece) {
  layout_.setFont(style.font);
  layout_.setCacheEnabled(true);
  DrawnText shown = drawn(text.substr(piece.begin, piece.end - piece.begin), style.labelColor);
  offsets_ = std::move(shown.offsets);
  layout_.setText(shown.text);
  layout_.setFormats(shown.formats);
  layout_.setTextOption(optionFor(layout_.text(), style.font));
  breakIntoRows(style);
}

// A row keeps its baseline and height when a part of it comes from another font, unless that part needs more.
void PlainPieceLayout::breakIntoRows(const LayoutStyle& style) {
  const QFontMetricsF metrics(style.font);
  const double spacing = (rowHeight(style.font) - metrics.height()) / 2;
  rowTops_ = {0};
  layout_.beginLayout();
  for (QTextLine line = layout_.createLine(); line.isValid(); line = layout_.createLine()) {
    line.setLineWidth(style.width);
    const double above = std::max(line.ascent(), metrics.ascent() + spacing);
    const double below = std::max(line.descent(), metrics.descent() + spacing);
    line.setPosition({0, rowTops_.back() + std::round(above - line.ascent())});
    rowTops_.push_back(rowTops_.back() + static_cast<int>(std::ceil(above + below)));
  }
  layout_.endLayout();
}

bool PlainPieceLayout::isRightToLeft() const { return layout_.text().isRightToLeft(); }

int PlainPieceLayout::indexOf(std::size_t offset) const {
  const std::size_t inside = std::clamp(offset, piece().begin, piece().end) - piece().begin;
  return static_cast<int>(std::lower_bound(offsets_.begin(), offsets_.end(), inside) - offsets_.begin());
}

std::size_t PlainPieceLayout::offsetOf(int index) const {
  return piece().begin + offsets_[static_cast<std::size_t>(index)];
}

int PlainPieceLayout::rowAt(double y) const {
  const auto below = std::upper_bound(rowTops_.begin() + 1, rowTops_.end() - 1, y);
  return static_cast<int>(below - rowTops_.begin()) - 1;
}

int PlainPieceLayout::rowOf(int index) const { return layout_.lineForTextPosition(index).lineNumber(); }

TextRange PlainPieceLayout::rangeOf(int row) const {
  const QTextLine line = layout_.lineAt(row);
  return {offsetOf(line.textStart()), offsetOf(line.textStart() + line.textLength())};
}

std::size_t PlainPieceLayout::offsetAt(QPointF point) const {
  const QTextLine line = layout_.lineAt(rowAt(point.y()));
  return offsetOf(line.xToCursor(point.x()));
}

std::size_t PlainPieceLayout::characterAt(QPointF point) const {
  const QTextLine line = layout_.lineAt(rowAt(point.y()));
  return offsetOf(line.xToCursor(point.x(), QTextLine::CursorOnCharacter));
}

QRect PlainPieceLayout::caretAt(std::size_t offset) const {
  const int index = indexOf(offset);
  const auto row = static_cast<std::size_t>(rowOf(index));
  const double x = layout_.lineAt(static_cast<int>(row)).cursorToX(index);
  return {static_cast<int>(x), rowTops_[row], 1, rowTops_[row + 1] - rowTops_[row]};
}

TextRange PlainPieceLayout::rowAround(std::size_t offset) const { return rangeOf(rowOf(indexOf(offset))); }

TextRange PlainPieceLayout::wordAround(std::size_t offset) const {
  const auto [begin, end] = wordIn(layout_.text(), indexOf(offset));
  return {offsetOf(begin), offsetOf(end)};
}

std::size_t PlainPieceLayout::next(std::size_t offset, QTextLayout::CursorMode mode) const {
  const int last = static_cast<int>(offsets_.size()) - 1;
  for (int index = indexOf(offset); index < last;) {
    index = layout_.nextCursorPosition(index, mode);
    if (offsetOf(index) > offset) return offsetOf(index);
  }
  return offset;
}

std::size_t PlainPieceLayout::previous(std::size_t offset, QTextLayout::CursorMode mode) const {
  for (int index = indexOf(offset); index > 0;) {
    index = layout_.previousCursorPosition(index, mode);
    if (offsetOf(index) < offset) return offsetOf(index);
  }
  return offset;
}

bool PlainPieceLayout::holdsBreak(TextRange selection) const {
  return piece().next > piece().end && selection.begin <= piece().end && selection.end >= piece().next;
}

// Characters of one direction are next to each other, those of the other start a strip of their own.
void PlainPieceLayout::addStrips(int row, int from, int to, std::vector<QRectF>& strips) const {
  const QTextLine line = layout_.lineAt(row);
  const auto top = static_cast<std::size_t>(row);
  const double height = rowTops_[top + 1] - rowTops_[top];
  for (int index = from; index < to;) {
    const int following = std::min(layout_.nextCursorPosition(index), to);
    const double leading = line.cursorToX(index);
    const double trailing = line.cursorToX(following - 1, QTextLine::Trailing);
    strips.emplace_back(std::min(leading, trailing), rowTops_[top], std::abs(trailing - leading), height);
    index = following;
  }
}

void PlainPieceLayout::addRowStrip(int row, std::vector<QRectF>& strips) const {
  const auto top = static_cast<std::size_t>(row);
  const QRectF text = layout_.lineAt(row).naturalTextRect();
  strips.emplace_back(text.left(), rowTops_[top], text.width(), rowTops_[top + 1] - rowTops_[top]);
}

void PlainPieceLayout::addBreakStrip(int row, std::vector<QRectF>& strips) const {
  const auto top = static_cast<std::size_t>(row);
  const int height = rowTops_[top + 1] - rowTops_[top];
  const double x = layout_.lineAt(row).cursorToX(static_cast<int>(offsets_.size()) - 1);
  const double width = height / 3.0;
  strips.emplace_back(isRightToLeft() ? x - width : x, rowTops_[top], width, height);
}

std::vector<QRectF> PlainPieceLayout::marks(TextRange selection, int firstRow, int lastRow) const {
  const int from = indexOf(selection.begin);
  const int to = indexOf(selection.end);
  std::vector<QRectF> strips;
  for (int row = firstRow; row <= lastRow; ++row) {
    const QTextLine line = layout_.lineAt(row);
    const int start = line.textStart();
    const int end = start + line.textLength();
    if (from <= start && to >= end) {
      addRowStrip(row, strips);
    } else {
      addStrips(row, std::max(from, start), std::min(to, end), strips);
    }
  }
  const bool isEndVisible = lastRow == layout_.lineCount() - 1;
  if (isEndVisible && holdsBreak(selection)) addBreakStrip(lastRow, strips);
  return strips;
}

void PlainPieceLayout::draw(QPainter& painter, QPoint origin, const QRect& clip, TextRange selection,
                            const QPalette& palette) const {
  QList<QTextLayout::FormatRange> selected;
  if (selection.begin < piece().next && selection.end > piece().begin && !selection.isEmpty()) {
    const int first = rowAt(clip.top() - origin.y());
    const int last = rowAt(clip.bottom() - origin.y());
    for (const QRectF& strip : marks(selection, first, last)) {
      painter.fillRect(strip.translated(origin), palette.highlight());
    }
    const int from = indexOf(selection.begin);
    selected.append(coloured(from, indexOf(selection.end) - from, palette.color(QPalette::HighlightedText)));
  }
  painter.setPen(palette.color(QPalette::Text));
  layout_.draw(&painter, origin, selected, clip);
}

}  // namespace tarnix::qt
