#include "backends/qt/navigation_split.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

#include "backends/qt/fonts.h"
#include "backends/qt/hairline.h"

namespace tarnix::qt {
namespace {

constexpr int kBarHeight = 48;
constexpr int kBarMargin = 12;
constexpr int kBarSpacing = 8;
constexpr int kSidebarWidth = 272;
constexpr int kSidebarMinimumWidth = 190;
constexpr int kDetailMinimumWidth = 280;
constexpr int kDetailWidth = 1000;  // Beside the sidebar's: whatever the window leaves.
constexpr modifiers::Font kTitleFont{.size = 14};

class LineHandle : public QSplitterHandle {
 public:
  using QSplitterHandle::QSplitterHandle;

 protected:
  void paintEvent(QPaintEvent*) override { QPainter(this).fillRect(rect(), palette().color(QPalette::Mid)); }
};

void replaceContents(QBoxLayout& layout, const std::vector<QWidget*>& widgets, int stretch) {
  while (layout.count() > 0) delete layout.takeAt(0);
  for (QWidget* const widget : widgets) {
    layout.addWidget(widget, stretch);
    widget->show();
  }
}

QBoxLayout* itemRow() {
  auto* const row = new QHBoxLayout;
  row->setContentsMargins({});
  row->setSpacing(kBarSpacing);
  return row;
}

}  // namespace

NavigationSplit::NavigationSplit(QWidget* parent) : QSplitter(Qt::Horizontal, parent), sidebar_(new QWidget) {
  setHandleWidth(1);
  setChildrenCollapsible(false);
  sidebar_->setBackgroundRole(QPalette::AlternateBase);
  sidebar_->setAutoFillBackground(true);
  sidebar_->setMinimumWidth(kSidebarMinimumWidth);
  (new QVBoxLayout(sidebar_))->setContentsMargins({});
  addWidget(sidebar_);
  addWidget(makeDetailColumn());
  // The last that is added would be the first for assistive tools.
  sidebar_->lower();
  setStretchFactor(0, 0);
  setStretchFactor(1, 1);
  setSizes({kSidebarWidth, kDetailWidth});
}

QWidget* NavigationSplit::makeDetailColumn() {
  auto* const column = new QWidget;
  column->setMinimumWidth(kDetailMinimumWidth);
  auto* const bar = new QWidget;
  bar->setFixedHeight(kBarHeight);
  auto* const row = new QHBoxLayout(bar);
  row->setContentsMargins(kBarMargin, 0, kBarMargin, 0);
  row->setSpacing(kBarSpacing);
  row->addLayout(leadingItems_ = itemRow());
  row->addWidget(title_ = new QLabel, 1);
  row->addLayout(trailingItems_ = itemRow());
  title_->setTextFormat(Qt::PlainText);
  QFont font = fontFor(&kTitleFont);
  font.setWeight(QFont::DemiBold);
  title_->setFont(font);
  auto* const layout = new QVBoxLayout(column);
  layout->setContentsMargins({});
  layout->setSpacing(0);
  layout->addWidget(bar);
  layout->addWidget(new Hairline);
  layout->addLayout(detail_ = new QVBoxLayout, 1);
  return column;
}

QSplitterHandle* NavigationSplit::createHandle() { return new LineHandle(orientation(), this); }

void NavigationSplit::setSidebar(QWidget* content) {
  auto& layout = static_cast<QBoxLayout&>(*sidebar_->layout());
  replaceContents(layout, content == nullptr ? std::vector<QWidget*>() : std::vector{content}, 1);
}

void NavigationSplit::setDetail(QWidget* content) {
  replaceContents(*detail_, content == nullptr ? std::vector<QWidget*>() : std::vector{content}, 1);
}

void NavigationSplit::setTitle(const QString& title) {
  if (title_->text() != title) title_->setText(title);
}

void NavigationSplit::setToolbar(const std::vector<QWidget*>& leading,
                                 const std::vector<QWidget*>& trailing) {
  replaceContents(*leadingItems_, leading, 0);
  replaceContents(*trailingItems_, trailing, 0);
}

void NavigationSplit::toggleSidebar() { sidebar_->setVisible(sidebar_->isHidden()); }

}  // namespace tarnix::qt
