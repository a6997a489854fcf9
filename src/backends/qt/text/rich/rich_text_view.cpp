#include "backends/qt/text/rich/rich_text_view.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QToolTip>
#include <algorithm>
#include <cstdlib>
#include <utility>

#include "backends/qt/text/rich/rich_text_accessible.h"
#include "backends/qt/text/rich/rich_text_formats.h"
#include "backends/qt/text/rich/rich_text_pieces.h"
#include "backends/qt/theme/colors.h"
#include "backends/qt/theme/text.h"
#include "platform/appkit/text_view.h"

namespace tarnix::qt {

RichTextView::RichTextView(QWidget* parent) : PlainTextView(parent) {
  installRichTextAccessibility();
  viewport()->setMouseTracking(true);
}

void RichTextView::setText(String text) {
  if (!attributed_) return PlainTextView::setText(std::move(text));
  attributed_.reset();
  links_.clear();
  setPieces(std::make_shared<PlainPieces>(std::move(text)), true);
}

void RichTextView::setAttributedText(const NSAttributedString& text) {
  if (attributed_ == text) return;
  attributed_ = text;
  isLink_.clear();
  for (const TextAttributes& each : text.attributes()) isLink_.push_back(NSTextView::canOpenLink(each.link));
  findLinks();
  setPieces(std::make_shared<RichPieces>(text), true);
}

void RichTextView::findLinks() {
  links_.clear();
  if (std::ranges::find(isLink_, true) == isLink_.end()) return;
  for (std::size_t run = 0; run < attributed_->runs().size() && links_.size() < kMostLinks; ++run) {
    if (isLink(run) && (links_.empty() || attributed_->runs()[run].end > links_.back().range.end))
      links_.push_back(linkOf(run));
  }
}

void RichTextView::setGround(std::optional<NSColor> background, bool isAdaptive) {
  if (background == background_ && isAdaptive == isAdaptive_) return;
  background_ = std::move(background);
  isAdaptive_ = isAdaptive;
  layOut();
}

QColor RichTextView::ground() const {
  return background_ ? colorOf(*background_, palette()) : palette().color(QPalette::Base);
}

LayoutStyle RichTextView::layoutStyle() const {
  LayoutStyle style = PlainTextView::layoutStyle();
  style.colors = textColors(palette(), ground(), isAdaptive_);
  return style;
}

void RichTextView::paintEvent(QPaintEvent* event) {
  if (background_) QPainter(viewport()).fillRect(event->rect(), ground());
  PlainTextView::paintEvent(event);
}

// The number of the run that holds the byte at `offset`; how many there are for the end.
std::size_t RichTextView::runIndexAt(std::size_t offset) const {
  const auto runs = attributed_->runs();
  const auto run = std::ranges::upper_bound(runs, offset, {}, &NSAttributedString::Run::end);
  return static_cast<std::size_t>(run - runs.begin());
}

TextRange RichTextView::rangeOfRuns(std::size_t first, std::size_t last) const {
  const auto runs = attributed_->runs();
  return {first == 0 ? 0 : runs[first - 1].end, runs[last].end};
}

std::optional<RichTextView::Run> RichTextView::runAt(std::size_t offset) const {
  const std::size_t index = attributed_ ? runIndexAt(offset) : 0;
  if (!attributed_ || index == attributed_->runs().size()) return std::nullopt;
  return Run{attributed_->attributesOf(attributed_->runs()[index]), rangeOfRuns(index, index)};
}

// By the names of IAccessible2's text attributes.
std::pair<QString, TextRange> RichTextView::lookAt(std::size_t offset) const {
  const auto run = runAt(offset);
  if (!run) return PlainTextView::lookAt(offset);
  const TextAttributes& look = run->attributes;
  QString told;
  const auto add = [&](bool isSo, const QString& words) { told += isSo ? words + u';' : QString(); };
  const QString family = toQString(look.font.familyName).remove(u'"');
  add(!family.isEmpty(), QStringLiteral("font-family:\"%1\"").arg(family));
  add(look.font.pointSize > 0, QStringLiteral("font-size:%1pt").arg(look.font.pointSize));
  add(look.font.isBold, QStringLiteral("font-weight:bold"));
  add(look.font.isItalic, QStringLiteral("font-style:italic"));
  add(look.underline != LineStyle::none, look.underline == LineStyle::twofold
                                             ? QStringLiteral("text-underline-type:double")
                                             : QStringLiteral("text-underline-type:single"));
  add(look.strikethrough != LineStyle::none, QStringLiteral("text-line-through-style:solid"));
  add(look.superscript != 0,
      look.superscript > 0 ? QStringLiteral("text-position:super") : QStringLiteral("text-position:sub"));
  return {told, run->range};
}

bool RichTextView::isLink(std::size_t run) const { return isLink_[attributed_->runs()[run].attributes]; }

RichTextView::Link RichTextView::linkOf(std::size_t run) const {
  const auto targetOf = [this](std::size_t each) -> const String& {
    return attributed_->attributesOf(attributed_->runs()[each]).link;
  };
  const String& target = targetOf(run);
  std::size_t first = run;
  while (first > 0 && targetOf(first - 1) == target) --first;
  std::size_t last = run;
  while (last + 1 < attributed_->runs().size() && targetOf(last + 1) == target) ++last;
  return {target, rangeOfRuns(first, last)};
}

std::optional<RichTextView::Link> RichTextView::linkAt(std::size_t offset) const {
  const std::size_t run = attributed_ ? runIndexAt(offset) : 0;
  if (!attributed_ || run == attributed_->runs().size() || !isLink(run)) return std::nullopt;
  return linkOf(run);
}

std::optional<RichTextView::Link> RichTextView::linkUnder(QPoint point) const {
  if (!attributed_) return std::nullopt;
  const std::size_t offset = characterAt(point);
  const QRect caret = caretRect(offset);
  const bool isBeside = caret.isNull() || point.y() < caret.top() || point.y() > caret.bottom() ||
                        std::abs(point.x() - caret.left()) > 2 * caret.height();
  return isBeside ? std::nullopt : linkAt(offset);
}

// From the selection on, so that one goes on where one is.
std::optional<RichTextView::Link> RichTextView::nextLink(bool isNext) const {
  if (!attributed_) return std::nullopt;
  if (isNext) {
    for (std::size_t run = runIndexAt(selection().end); run < attributed_->runs().size(); ++run) {
      if (isLink(run)) return linkOf(run);
    }
  } else if (selection().begin > 0) {
    for (std::size_t behind = runIndexAt(selection().begin - 1) + 1; behind > 0; --behind) {
      if (isLink(behind - 1)) return linkOf(behind - 1);
    }
  }
  return std::nullopt;
}

std::optional<RichTextView::Link> RichTextView::selectedLink() const {
  auto link = linkAt(selection().begin);
  return link && link->range == selection() ? link : std::nullopt;
}

// The target is told before it is opened, since what a link says may be anything.
void RichTextView::tell(const std::optional<Link>& link) {
  const QString target = link ? titleStart(link->target) : QString();
  if (accessibleDescription() != target) setAccessibleDescription(target);
}

bool RichTextView::focusNextPrevChild(bool isNext) {
  const auto link = nextLink(isNext);
  if (!link) {
    tell(std::nullopt);
    return PlainTextView::focusNextPrevChild(isNext);
  }
  goTo(*link);
  return true;
}

void RichTextView::goTo(const Link& link) {
  tell(link);
  select(link.range.begin, link.range.end);
  reveal(link.range.end);
  reveal(link.range.begin);
  QToolTip::showText(mapToGlobal(caretRect(link.range.begin).bottomLeft()), titleStart(link.target), this);
  const auto isThis = [&](const Link& each) { return each.range == link.range; };
  const auto found = std::ranges::find_if(links_, isThis);
  if (found != links_.end()) announceLink(*this, static_cast<std::size_t>(found - links_.begin()));
}

void RichTextView::open(const Link& link) {
  if (open_) open_(link.target);
}

void RichTextView::keyPressEvent(QKeyEvent* event) {
  const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  const auto link = isEnter ? selectedLink() : std::nullopt;
  if (!link) return PlainTextView::keyPressEvent(event);
  open(*link);
}

void RichTextView::mousePressEvent(QMouseEvent* event) {
  pressed_ = event->button() == Qt::LeftButton ? linkUnder(event->position().toPoint()) : std::nullopt;
  PlainTextView::mousePressEvent(event);
  if (pressed_) event->accept();
}

void RichTextView::mouseMoveEvent(QMouseEvent* event) {
  if (event->buttons() != Qt::NoButton) return PlainTextView::mouseMoveEvent(event);
  const bool isOnLink = linkUnder(event->position().toPoint()).has_value();
  const Qt::CursorShape standard = isSelectable() ? Qt::IBeamCursor : Qt::ArrowCursor;
  viewport()->setCursor(isOnLink ? Qt::PointingHandCursor : standard);
}

// A drag that begins on a link selects.
void RichTextView::mouseReleaseEvent(QMouseEvent* event) {
  PlainTextView::mouseReleaseEvent(event);
  const auto pressed = std::exchange(pressed_, std::nullopt);
  const auto released = linkUnder(event->position().toPoint());
  if (!pressed || !released || pressed->range != released->range || !selection().isEmpty()) return;
  open(*pressed);
}

bool RichTextView::event(QEvent* event) {
  if (event->type() == QEvent::FocusOut) tell(std::nullopt);
  return PlainTextView::event(event);
}

bool RichTextView::viewportEvent(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return PlainTextView::viewportEvent(event);
  const auto& help = static_cast<const QHelpEvent&>(*event);
  const auto link = linkUnder(help.pos());
  if (!link) return PlainTextView::viewportEvent(event);
  QToolTip::showText(help.globalPos(), titleStart(link->target), this);
  return true;
}

}  // namespace tarnix::qt
