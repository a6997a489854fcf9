#pragma once

#include <QColor>
#include <QList>
#include <QString>
#include <QTextLayout>
#include <cstdint>
#include <string_view>
#include <vector>

namespace tarnix::qt {

// A part of a text as it is drawn. Characters that would be invisible or change the order of their neighbours
// (controls, bidirectional controls) are drawn as their short names in brackets, legible at any size and with
// any font. Marks beyond what a Stream-Safe text has on one character (Unicode Standard Annex 15, section 13)
// are drawn as their number, because laying them out takes time quadratic in it.
struct DrawnText {
  QString text;
  std::vector<std::uint32_t> offsets;  // Source of each UTF-16 unit of `text`, and the end of the source.
  QList<QTextLayout::FormatRange> formats;  // The colour of what stands for something else.
};

// Which characters are drawn as their names: in a text with a look of its own, which may set its direction,
// only those that no text has.
enum class DrawnControls { all, thoseOfNoText };

DrawnText drawn(std::string_view bytes, const QColor& labelColor,
                DrawnControls controls = DrawnControls::all);

// `color` for the text of a part of a layout.
QTextLayout::FormatRange coloured(qsizetype start, qsizetype length, const QColor& color);

}  // namespace tarnix::qt
