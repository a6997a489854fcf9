#include "backends/qt/widgets/limited_text.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QTextOption>

namespace tarnix::qt {
namespace {

QTextOption optionFor(const QString& text, Qt::LayoutDirection direction) {
  QTextOption option;
  option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  option.setTextDirection(text.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
  option.setAlignment(direction == Qt::RightToLeft ? Qt::AlignRight : Qt::AlignLeft);
  return option;
}

}  // namespace

LimitedText::LimitedText(const QString& text, const Form& form) : form_(form) {
  QString rest = text;
  while (lines_.size() + 1 < form.lineLimit && !rest.isEmpty()) {
    addLine(rest);
    rest = rest.mid(lines_.back()->lineAt(0).textLength()).trimmed();
  }
  if (rest.isEmpty() && !lines_.empty()) return;
  addLine(QFontMetricsF(form.font).elidedText(rest, Qt::ElideRight, form.width));
}

// Only the first line that the text breaks into; what follows it is left to the next one.
void LimitedText::addLine(const QString& text) {
  auto layout = std::make_unique<QTextLayout>(text, form_.font);
  layout->setTextOption(optionFor(text, form_.direction));
  layout->beginLayout();
  QTextLine line = layout->createLine();
  if (line.isValid()) line.setLineWidth(form_.width);
  layout->endLayout();
  lines_.push_back(std::move(layout));
}

void LimitedText::draw(QPainter& painter, const QPointF& corner, int lineHeight) const {
  for (std::size_t i = 0; i < lines_.size(); ++i) {
    const double drop = (lineHeight - lines_[i]->lineAt(0).height()) / 2;
    lines_[i]->draw(&painter, corner + QPointF(0, static_cast<double>(i) * lineHeight + drop));
  }
}

}  // namespace tarnix::qt
