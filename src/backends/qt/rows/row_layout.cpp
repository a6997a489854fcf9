#include "backends/qt/rows/row_layout.h"

#include <QFontMetricsF>
#include <algorithm>

#include "backends/qt/theme/fonts.h"
#include "backends/qt/theme/text.h"
#include "platform/foundation/bundle.h"

namespace tarnix::qt {
namespace {

constexpr int kRowGap = 2;
constexpr int kRowPadding = 7;
constexpr int kSideInset = 10;
constexpr int kSymbolSide = 17;
constexpr int kPartGap = 9;
constexpr int kPillPadding = 7;
constexpr double kPillFontScale = 0.84;
constexpr double kLineHeight = 1.32;  // Of the font's size.
constexpr std::size_t kLineLimit = 2;

// A title may be as large as a clip, and is not copied.
String localizedUnless(bool isVerbatim, const String& text) {
  return isVerbatim ? text : NSBundle::mainBundle().localizedStringForKey(text);
}

}  // namespace

RowLayout::RowLayout(const QStyleOptionViewItem& option, const Element& row) : option_(option) {
  ground_ = QRectF(option.rect).adjusted(0, 0, 0, -kRowGap);
  if (const auto* badge = row.modifier<modifiers::Badge>()) badge_ = QString::number(badge->count);
  addParts(row);
  placePill();
  placeParts();
  if (option.direction == Qt::RightToLeft) mirror();
}

// What else may stand in a row counts by what it holds.
void RowLayout::addParts(const Element& element) {
  if (const auto* text = element.as<elements::Text>())
    addText(localizedUnless(text->isVerbatim, text->text), element);
  if (const auto* image = element.as<elements::Image>()) addSymbol(image->systemName, element);
  if (const auto* label = element.as<elements::Label>()) {
    addSymbol(label->systemName, element);
    addText(localizedUnless(label->isVerbatim, label->title), element);
  }
  for (const Element& child : element.children) addParts(child);
}

// A row without a symbol keeps the place for it, so that the texts of all rows begin at one line.
void RowLayout::addSymbol(const String& name, const Element& element) {
  const auto* font = element.modifier<modifiers::Font>();
  Part part;
  part.symbol = name.empty() ? QStringLiteral(" ") : toQString(name);
  part.side = font == nullptr ? kSymbolSide : symbolSide(font);
  if (const auto* style = element.modifier<modifiers::ForegroundStyle>()) part.style = *style;
  parts_.push_back(std::move(part));
}

void RowLayout::addText(const String& text, const Element& element) {
  const auto* font = element.modifier<modifiers::Font>();
  const auto* limit = element.modifier<modifiers::LineLimit>();
  Part part;
  const QString title = titleStart(text);
  const QString placeholder = placeholderFor(title);
  part.text = placeholder.isEmpty() ? singleLine(title) : placeholder;
  if (!placeholder.isEmpty()) part.style = modifiers::ForegroundStyle::secondary;
  part.font = font == nullptr ? option_.font : fontFor(font);
  part.lineLimit = limit == nullptr ? kLineLimit : limit->lines;
  if (const auto* style = element.modifier<modifiers::ForegroundStyle>()) part.style = *style;
  parts_.push_back(std::move(part));
}

int RowLayout::lineHeight(const QFont& font) {
  const QFontMetrics metrics(font);
  return qMax(metrics.height(), qRound(kLineHeight * (metrics.ascent() + metrics.descent()) / 1.17));
}

QFont RowLayout::pillFont() const {
  QFont font = option_.font;
  if (font.pointSizeF() > 0) {
    font.setPointSizeF(font.pointSizeF() * kPillFontScale);
  } else {
    font.setPixelSize(qRound(font.pixelSize() * kPillFontScale));
  }
  return font;
}

void RowLayout::placePill() {
  const QFontMetricsF metrics(pillFont());
  const double height = metrics.height() + 2;
  const double width =
      badge_.isEmpty() ? 0 : qMax(height + 4, metrics.horizontalAdvance(badge_) + 2 * kPillPadding);
  const double top = ground_.top() + kRowPadding + (lineHeight(option_.font) - height) / 2;
  pill_ = {ground_.right() - kSideInset - width, top, width, height};
}

void RowLayout::placeParts() {
  const auto texts =
      std::count_if(parts_.begin(), parts_.end(), [](const Part& part) { return part.isText(); });
  double left = ground_.left() + kSideInset;
  double free = pill_.left() - (badge_.isEmpty() ? 0 : kPartGap) - left;
  for (const Part& part : parts_) free -= part.side;
  free -= kPartGap * std::max(0.0, static_cast<double>(parts_.size()) - 1);
  for (Part& part : parts_) {
    const double width = part.isText() ? std::max(free, 0.0) / static_cast<double>(texts) : part.side;
    const int line = lineHeight(part.isText() ? part.font : option_.font);
    const double top = ground_.top() + kRowPadding;
    part.room = part.isText() ? QRectF(left, top, width, line)
                              : QRectF(left, top + (line - part.side) / 2.0, width, part.side);
    left += width + kPartGap;
  }
}

void RowLayout::mirror() {
  const auto mirrored = [&](QRectF& room) { room.moveLeft(ground_.left() + ground_.right() - room.right()); };
  for (Part& part : parts_) mirrored(part.room);
  mirrored(pill_);
}

LimitedText RowLayout::textOf(const Part& part) const {
  return {part.text, {part.font, part.room.width(), part.lineLimit, option_.direction}};
}

int RowLayout::height() const {
  int content = lineHeight(option_.font);
  for (const Part& part : parts_) {
    const int height = part.isText() ? textOf(part).lineCount() * lineHeight(part.font) : part.side;
    content = std::max(content, height);
  }
  return content + 2 * kRowPadding + kRowGap;
}

}  // namespace tarnix::qt
