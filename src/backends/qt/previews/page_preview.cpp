#include "backends/qt/previews/page_preview.h"

#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>
#include <algorithm>
#include <cmath>
#include <utility>

#include "backends/qt/previews/preview_texts.h"
#include "backends/qt/theme/focus_ring.h"
#include "backends/qt/theme/fonts.h"

namespace tarnix::qt {
namespace {

constexpr int kPageMargin = 16;
constexpr std::size_t kKeptPages = 6;
constexpr int kPageStep = 40;
// Pages aren't enlarged further, however wide the window.
constexpr double kMostScale = 1.5;

}  // namespace

PagePreview::PagePreview(Ask ask, QWidget* parent)
    : QAbstractScrollArea(parent), PreviewPart(QAccessible::Document), ask_(std::move(ask)) {
  setFrameShape(QFrame::NoFrame);
  setFocusPolicy(Qt::StrongFocus);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  viewport()->setBackgroundRole(QPalette::AlternateBase);
}

void PagePreview::setDocument(const previewing::Document& document) {
  sizes_ = document.sizes;
  drawn_.clear();
  asked_.reset();
  setAccessibleName(texts::documentName(document.pages));
  layOut();
  verticalScrollBar()->setValue(0);
  askForNext();
}

void PagePreview::setPage(PreviewPage page) {
  if (asked_ == page.page) asked_.reset();
  drawn_[page.page] = std::move(page.image);
  forgetDistant();
  viewport()->update();
  askForNext();
}

std::pair<std::size_t, std::size_t> PagePreview::visiblePages() const {
  const double top = verticalScrollBar()->value();
  const auto after = std::upper_bound(tops_.begin(), tops_.end(), top + viewport()->height());
  auto first = std::upper_bound(tops_.begin(), tops_.end(), top);
  if (first != tops_.begin()) --first;
  return {static_cast<std::size_t>(first - tops_.begin()), static_cast<std::size_t>(after - tops_.begin())};
}

void PagePreview::layOut() {
  float widest = 1;
  for (const auto& each : sizes_) widest = std::max(widest, each.first);
  const double room = std::max(1, viewport()->width() - 2 * kPageMargin);
  const double former = scale_;
  scale_ = std::min(room / static_cast<double>(widest), kMostScale * pixelsPerPoint());
  tops_.clear();
  double top = kPageMargin;
  for (const auto& each : sizes_) {
    tops_.push_back(top);
    top += static_cast<double>(each.second) * scale_ + kPageMargin;
  }
  const double place = verticalScrollBar()->value() / former * scale_;
  verticalScrollBar()->setRange(0, static_cast<int>(std::min(1e9, top)) - viewport()->height());
  verticalScrollBar()->setPageStep(viewport()->height());
  verticalScrollBar()->setSingleStep(kPageStep);
  verticalScrollBar()->setValue(static_cast<int>(place));
}

QRectF PagePreview::pageRect(std::size_t page) const {
  const QSizeF size =
      QSizeF(static_cast<double>(sizes_[page].first), static_cast<double>(sizes_[page].second)) * scale_;
  return {{std::floor((viewport()->width() - size.width()) / 2), tops_[page] - verticalScrollBar()->value()},
          size};
}

QSize PagePreview::pixelsOf(std::size_t page) const {
  QSizeF pixels = pageRect(page).size() * devicePixelRatioF();
  const double count = pixels.width() * pixels.height();
  if (count > previewing::kMostPixels) pixels *= std::sqrt(previewing::kMostPixels / count) * 0.99;
  return pixels.toSize().expandedTo({1, 1});
}

// From the top; those beside what is in sight are left until they come.
void PagePreview::askForNext() {
  if (asked_) return;
  const auto [first, after] = visiblePages();
  for (std::size_t page = first; page < after; ++page) {
    const auto drawn = drawn_.find(page);
    const QSize pixels = pixelsOf(page);
    if (drawn != drawn_.end() && drawn->second.size() == pixels) continue;
    asked_ = page;
    return ask_(page, pixels);
  }
}

void PagePreview::forgetDistant() {
  const auto middle = [range = visiblePages()] { return (range.first + range.second) / 2; }();
  const auto distance = [&](std::size_t page) { return page > middle ? page - middle : middle - page; };
  while (drawn_.size() > std::max(kKeptPages, visiblePages().second - visiblePages().first)) {
    const auto farthest =
        std::ranges::max_element(drawn_, {}, [&](const auto& each) { return distance(each.first); });
    drawn_.erase(farthest);
  }
}

void PagePreview::paintEvent(QPaintEvent*) {
  QPainter painter(viewport());
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  const auto [first, after] = visiblePages();
  for (std::size_t page = first; page < after; ++page) {
    const QRectF place = pageRect(page);
    painter.fillRect(place, Qt::white);
    if (const auto drawn = drawn_.find(page); drawn != drawn_.end()) painter.drawImage(place, drawn->second);
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawRect(place.adjusted(-0.5, -0.5, 0.5, 0.5));
  }
  if (showsFocus(*this)) paintFocusRingWithin(painter, viewport()->rect());
}

void PagePreview::resizeEvent(QResizeEvent*) {
  layOut();
  askForNext();
}

void PagePreview::scrollContentsBy(int, int) {
  viewport()->update();
  askForNext();
}

void PagePreview::keyPressEvent(QKeyEvent* event) {
  QScrollBar& bar = *verticalScrollBar();
  if (event->matches(QKeySequence::MoveToStartOfDocument) || event->key() == Qt::Key_Home) {
    bar.setValue(bar.minimum());
  } else if (event->matches(QKeySequence::MoveToEndOfDocument) || event->key() == Qt::Key_End) {
    bar.setValue(bar.maximum());
  } else if (event->key() == Qt::Key_Space) {
    bar.triggerAction(event->modifiers() & Qt::ShiftModifier ? QAbstractSlider::SliderPageStepSub
                                                             : QAbstractSlider::SliderPageStepAdd);
  } else {
    QAbstractScrollArea::keyPressEvent(event);
  }
}

void PagePreview::focusInEvent(QFocusEvent* event) {
  QAbstractScrollArea::focusInEvent(event);
  viewport()->update();
}

void PagePreview::focusOutEvent(QFocusEvent* event) {
  QAbstractScrollArea::focusOutEvent(event);
  viewport()->update();
}

}  // namespace tarnix::qt
