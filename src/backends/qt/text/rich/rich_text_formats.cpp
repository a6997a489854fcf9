#include "backends/qt/text/rich/rich_text_formats.h"

#include <QFontInfo>
#include <QTextOption>
#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>

#include "backends/qt/theme/colors.h"
#include "backends/qt/theme/fonts.h"
#include "platform/appkit/text_view.h"

namespace tarnix::qt {
namespace {

// What a document asks for beyond these would only make it unreadable.
constexpr double kLeastText = 120;
constexpr double kMostSpace = 300;
constexpr double kMostLineHeight = 400;
constexpr std::size_t kMostTabStops = 64;

QColor toQColor(const TextColor& color) { return {color.red, color.green, color.blue}; }

QTextCharFormat::UnderlineStyle underlineOf(LineStyle style) {
  switch (style) {
    case LineStyle::none:
      return QTextCharFormat::NoUnderline;
    case LineStyle::dotted:
      return QTextCharFormat::DotLine;
    case LineStyle::dashed:
      return QTextCharFormat::DashUnderline;
    case LineStyle::wavy:
      return QTextCharFormat::WaveUnderline;
    default:
      return QTextCharFormat::SingleUnderline;
  }
}

void setLines(QTextCharFormat& format, const TextAttributes& attributes) {
  const bool isBareLink = attributes.underline == LineStyle::none && NSTextView::canOpenLink(attributes.link);
  const LineStyle underline = isBareLink ? LineStyle::single : attributes.underline;
  format.setUnderlineStyle(underlineOf(underline));
  format.setFontStrikeOut(attributes.strikethrough != LineStyle::none);
  const auto add = [&](int property, AddedLine line) {
    format.setProperty(property, static_cast<int>(line));
  };
  if (underline == LineStyle::twofold) add(kAddedUnderline, AddedLine::secondUnderline);
  if (underline == LineStyle::thick) add(kAddedUnderline, AddedLine::thickUnderline);
  if (attributes.strikethrough == LineStyle::twofold)
    add(kAddedStrikethrough, AddedLine::secondStrikethrough);
}

void setColors(QTextCharFormat& format, const TextAttributes& attributes, const TextColors& colors) {
  QColor ground = colors.background;
  if (attributes.highlight) {
    ground = toQColor(*attributes.highlight);
    if (colors.isAdaptive) ground = adaptedHighlight(ground, colors.background);
    format.setBackground(ground);
  }
  const QColor automatic = NSTextView::canOpenLink(attributes.link) ? colors.link : colors.text;
  const QColor wanted = attributes.color ? toQColor(*attributes.color) : automatic;
  const bool isExact = attributes.color && !colors.isAdaptive;
  format.setForeground(isExact ? wanted : adapted(wanted, ground));
}

QFont fontOf(const TextAttributes& attributes, const QFont& standard) {
  QFont font = fontFor(attributes.font, standard);
  if (attributes.capitals == TextCapitals::all) font.setCapitalization(QFont::AllUppercase);
  if (attributes.capitals == TextCapitals::small) font.setCapitalization(QFont::SmallCaps);
  return font;
}

Qt::Alignment alignmentOf(TextAlignment alignment) {
  switch (alignment) {
    case TextAlignment::natural:
      return Qt::AlignLeading;
    case TextAlignment::left:
      return Qt::AlignLeft | Qt::AlignAbsolute;
    case TextAlignment::center:
      return Qt::AlignHCenter;
    case TextAlignment::right:
      return Qt::AlignRight | Qt::AlignAbsolute;
    case TextAlignment::justified:
      return Qt::AlignJustify;
  }
  return Qt::AlignLeading;
}

QTextOption::TabType tabTypeOf(TextAlignment alignment) {
  if (alignment == TextAlignment::center) return QTextOption::CenterTab;
  return alignment == TextAlignment::right ? QTextOption::RightTab : QTextOption::LeftTab;
}

struct Indents {
  double first;
  double head;
  double tail;
};

Indents indentsOf(const ParagraphStyle& paragraph, double width) {
  const double scale = pixelsPerPoint();
  Indents indents{paragraph.firstLineIndent * scale, paragraph.headIndent * scale,
                  paragraph.tailIndent * scale};
  const double room = std::max(0.0, width - kLeastText);
  indents.head = std::clamp(indents.head, 0.0, room);
  indents.first = std::clamp(indents.first, 0.0, room);
  indents.tail = std::clamp(indents.tail, 0.0, room - std::max(indents.head, indents.first));
  return indents;
}

// The toolkit counts from where the first line begins. The indent of the other lines stops a tab as well, as
// that behind the marker of a list's item.
QList<QTextOption::Tab> tabsOf(const ParagraphStyle& paragraph, const Indents& indents) {
  QList<QTextOption::Tab> tabs;
  const double hanging = indents.head - indents.first;
  if (hanging > 0) tabs.append(QTextOption::Tab(hanging, QTextOption::LeftTab));
  const std::size_t count = std::min(paragraph.tabStops.size(), kMostTabStops);
  for (std::size_t i = 0; i < count; ++i) {
    const TabStop& stop = paragraph.tabStops[i];
    const double position = stop.position * pixelsPerPoint() - indents.first;
    if (position > 0 && std::abs(position - hanging) > 1)
      tabs.append(QTextOption::Tab(position, tabTypeOf(stop.alignment)));
  }
  std::ranges::sort(tabs, {}, &QTextOption::Tab::position);
  return tabs;
}

void setLineHeight(QTextBlockFormat& format, const ParagraphStyle& paragraph, const QFont& font) {
  const double height = std::min(paragraph.lineHeight * pixelsPerPoint(), kMostLineHeight);
  switch (paragraph.lineHeightRule) {
    case LineHeightRule::multiple:
      if (paragraph.lineHeight > 0.7 && paragraph.lineHeight < 5 && paragraph.lineHeight != 1)
        format.setLineHeight(100 * paragraph.lineHeight, QTextBlockFormat::ProportionalHeight);
      break;
    case LineHeightRule::atLeast:
      format.setLineHeight(height, QTextBlockFormat::MinimumHeight);
      break;
    case LineHeightRule::exactly:
      if (height > QFontInfo(font).pixelSize()) format.setLineHeight(height, QTextBlockFormat::FixedHeight);
      break;
  }
}

double space(CGFloat points) { return std::clamp(points * pixelsPerPoint(), 0.0, kMostSpace); }

}  // namespace

TextColors textColors(const QPalette& palette, const QColor& ground, bool isAdaptive) {
  return {palette.color(QPalette::Text), ground, palette.color(QPalette::Link), palette.color(QPalette::Mid),
          isAdaptive};
}

QTextCharFormat charFormat(const TextAttributes& attributes, const LayoutStyle& style) {
  QTextCharFormat format;
  format.setFont(fontOf(attributes, style.font));
  setLines(format, attributes);
  setColors(format, attributes, style.colors);
  if (attributes.superscript > 0) format.setVerticalAlignment(QTextCharFormat::AlignSuperScript);
  if (attributes.superscript < 0) format.setVerticalAlignment(QTextCharFormat::AlignSubScript);
  return format;
}

QTextBlockFormat blockFormat(const ParagraphStyle& paragraph, bool isRightToLeft, const QFont& standard,
                             int width) {
  QTextBlockFormat format;
  format.setLayoutDirection(isRightToLeft ? Qt::RightToLeft : Qt::LeftToRight);
  format.setAlignment(alignmentOf(paragraph.alignment));
  const Indents indents = indentsOf(paragraph, width);
  format.setLeftMargin(isRightToLeft ? indents.tail : indents.head);
  format.setRightMargin(isRightToLeft ? indents.head : indents.tail);
  format.setTextIndent(indents.first - indents.head);
  if (const auto tabs = tabsOf(paragraph, indents); !tabs.isEmpty()) format.setTabPositions(tabs);
  setLineHeight(format, paragraph, standard);
  return format;
}

bool readsFromTheRight(const ParagraphStyle& style, const QString& start) {
  if (style.direction == WritingDirection::natural) return start.isRightToLeft();
  return style.direction == WritingDirection::rightToLeft;
}

QTextTableFormat tableFormat(const LayoutStyle& style) {
  QTextTableFormat format;
  format.setBorder(1);
  format.setBorderBrush(style.colors.line);
  format.setBorderStyle(QTextFrameFormat::BorderStyle_Solid);
  format.setBorderCollapse(true);
  format.setCellPadding(4);
  format.setCellSpacing(0);
  return format;
}

double spaceBefore(const ParagraphStyle& paragraph) { return space(paragraph.spacingBefore); }

double spaceAfter(const ParagraphStyle& paragraph) { return space(paragraph.spacingAfter); }

}  // namespace tarnix::qt
