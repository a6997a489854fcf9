#pragma once

#include <QPalette>
#include <QTextBlockFormat>
#include <QTextCharFormat>
#include <QTextTableFormat>

#include "backends/qt/text/plain/piece_layout.h"
#include "platform/appkit/text_attributes.h"

// How the attributes of a text are told to the toolkit.
namespace tarnix::qt {

// Lines that the toolkit's own formats don't have, for whoever draws the text to add.
enum class AddedLine { none, secondUnderline, thickUnderline, secondStrikethrough };
inline constexpr int kAddedUnderline = QTextFormat::UserProperty + 1;
inline constexpr int kAddedStrikethrough = QTextFormat::UserProperty + 2;

// Those of a text on `ground`.
TextColors textColors(const QPalette& palette, const QColor& ground, bool isAdaptive);
QTextCharFormat charFormat(const TextAttributes& attributes, const LayoutStyle& style);
// Without the space before and after the paragraph. Indents leave room for the text in the width whatever the
// document says. `standard` is the font of the text around it.
QTextBlockFormat blockFormat(const ParagraphStyle& paragraph, bool isRightToLeft, const QFont& standard,
                             int width);
// Whether a paragraph that begins so is laid out from the right.
bool readsFromTheRight(const ParagraphStyle& style, const QString& start);
QTextTableFormat tableFormat(const LayoutStyle& style);

// In device-independent pixels.
double spaceBefore(const ParagraphStyle& paragraph);
double spaceAfter(const ParagraphStyle& paragraph);

}  // namespace tarnix::qt
