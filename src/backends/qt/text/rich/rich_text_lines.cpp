#include "backends/qt/text/rich/rich_text_lines.h"

#include <QAbstractTextDocumentLayout>
#include <QFontMetricsF>
#include <QPainter>
#include <QTextBlock>
#include <QTextDocument>
#include <algorithm>

#include "backends/qt/text/rich/rich_text_formats.h"

namespace tarnix::qt {
namespace {

// One more line of the same width, a little away from that which is there.
void drawAddedLine(QPainter& painter, const QTextCharFormat& format, QPointF from, double width) {
  const QFontMetricsF metrics(format.font());
  const double thickness = std::max(metrics.lineWidth(), 1.0);
  const auto draw = [&](double y) {
    painter.fillRect(QRectF(from.x(), from.y() + y, width, thickness), format.foreground());
  };
  const auto underline = static_cast<AddedLine>(format.intProperty(kAddedUnderline));
  if (underline == AddedLine::thickUnderline) draw(metrics.underlinePos() + thickness);
  if (underline == AddedLine::secondUnderline) draw(metrics.underlinePos() + 2 * thickness);
  const auto strikethrough = static_cast<AddedLine>(format.intProperty(kAddedStrikethrough));
  if (strikethrough == AddedLine::secondStrikethrough) draw(2 * thickness - metrics.strikeOutPos());
}

void drawAddedLines(QPainter& painter, const QTextBlock& block, const QTextFragment& fragment,
                    QPointF origin) {
  const int begin = fragment.position() - block.position();
  const int end = begin + fragment.length();
  for (int i = 0; i < block.layout()->lineCount(); ++i) {
    const QTextLine line = block.layout()->lineAt(i);
    const int first = std::max(begin, line.textStart());
    const int last = std::min(end, line.textStart() + line.textLength());
    if (first >= last) continue;
    const double left = line.cursorToX(first);
    const double right = line.cursorToX(last);
    const QPointF baseline(std::min(left, right), line.y() + line.ascent());
    drawAddedLine(painter, fragment.charFormat(), origin + baseline, std::abs(right - left));
  }
}

}  // namespace

void drawAddedLines(QPainter& painter, const QTextDocument& document) {
  const auto formats = document.allFormats();
  const auto isAdded = [](const QTextFormat& format) {
    return format.hasProperty(kAddedUnderline) || format.hasProperty(kAddedStrikethrough);
  };
  if (std::ranges::none_of(formats, isAdded)) return;
  for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
    const QPointF origin = document.documentLayout()->blockBoundingRect(block).topLeft();
    for (auto each = block.begin(); !each.atEnd(); ++each) {
      if (isAdded(each.fragment().charFormat())) drawAddedLines(painter, block, each.fragment(), origin);
    }
  }
}

}  // namespace tarnix::qt
