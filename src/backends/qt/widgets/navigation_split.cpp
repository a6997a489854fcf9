#include "backends/qt/widgets/navigation_split.h"

#include <QAccessibleWidget>
#include <QCoreApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>
#include <algorithm>

#include "backends/qt/theme/focus_ring.h"
#include "backends/qt/theme/fonts.h"
#include "backends/qt/theme/text.h"
#include "backends/qt/widgets/hairline.h"

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
constexpr int kKeyStep = 16;
constexpr int kFocusedLineWidth = 3;

// The line between the columns. The arrow keys move it to where they point, Home and End to its limits.
class LineHandle : public QSplitterHandle {
 public:
  explicit LineHandle(NavigationSplit& split) : QSplitterHandle(split.orientation(), &split), split_(split) {
    setFocusPolicy(Qt::TabFocus);
    setAccessibleName(localized("Sidebar width"));
  }
  NavigationSplit& split() const { return split_; }

 protected:
  // A line of one pixel has no room for a ring; it is as wide as one while it has the keyboard.
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(showsFocus(*this) ? QPalette::Link : QPalette::Mid));
  }
  void focusInEvent(QFocusEvent* event) override {
    QSplitterHandle::focusInEvent(event);
    split_.setHandleWidth(showsFocus(*this) ? kFocusedLineWidth : 1);
  }
  void focusOutEvent(QFocusEvent* event) override {
    QSplitterHandle::focusOutEvent(event);
    split_.setHandleWidth(1);
  }

  void keyPressEvent(QKeyEvent* event) override {
    const int forwards = isRightToLeft() ? -kKeyStep : kKeyStep;
    switch (event->key()) {
      case Qt::Key_Left:
        return split_.setSidebarWidth(split_.sidebarWidth() - forwards);
      case Qt::Key_Right:
        return split_.setSidebarWidth(split_.sidebarWidth() + forwards);
      case Qt::Key_Home:
        return split_.setSidebarWidth(split_.sidebarLimits().first);
      case Qt::Key_End:
        return split_.setSidebarWidth(split_.sidebarLimits().second);
      default:
        return QSplitterHandle::keyPressEvent(event);
    }
  }

 private:
  NavigationSplit& split_;
};

// Told to assistive tools as the splitter, whose value is the width of the sidebar.
class HandleAccessible : public QAccessibleWidget, public QAccessibleValueInterface {
 public:
  explicit HandleAccessible(LineHandle& handle)
      : QAccessibleWidget(&handle, QAccessible::Splitter), split_(handle.split()) {}

  void* interface_cast(QAccessible::InterfaceType type) override {
    if (type == QAccessible::ValueInterface) return static_cast<QAccessibleValueInterface*>(this);
    return QAccessibleWidget::interface_cast(type);
  }
  QVariant currentValue() const override { return split_.sidebarWidth(); }
  void setCurrentValue(const QVariant& value) override { split_.setSidebarWidth(value.toInt()); }
  QVariant minimumValue() const override { return split_.sidebarLimits().first; }
  QVariant maximumValue() const override { return split_.sidebarLimits().second; }
  QVariant minimumStepSize() const override { return kKeyStep; }

 private:
  NavigationSplit& split_;
};

QAccessibleInterface* makeSplitAccessible(const QString&, QObject* object) {
  if (auto* const handle = dynamic_cast<LineHandle*>(object)) return new HandleAccessible(*handle);
  auto* const split = dynamic_cast<NavigationSplit*>(object);
  return split == nullptr ? nullptr : new QAccessibleWidget(split, QAccessible::Grouping);
}

void installSplitAccessibility() {
  [[maybe_unused]] static const bool isInstalled = [] {
    QAccessible::installFactory(makeSplitAccessible);
    return true;
  }();
}

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
  installSplitAccessibility();
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
  connect(this, &QSplitter::splitterMoved, this, [this] {
    QAccessibleValueChangeEvent event(handle(1), sidebarWidth());
    QAccessible::updateAccessibility(&event);
  });
}

int NavigationSplit::sidebarWidth() const { return sizes().front(); }

std::pair<int, int> NavigationSplit::sidebarLimits() const {
  int least = 0;
  int most = 0;
  getRange(1, &least, &most);
  return {least, most};
}

void NavigationSplit::setSidebarWidth(int width) {
  const auto [least, most] = sidebarLimits();
  moveSplitter(std::clamp(width, least, std::max(least, most)), 1);
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
  alignTitle();
  auto* const layout = new QVBoxLayout(column);
  layout->setContentsMargins({});
  layout->setSpacing(0);
  layout->addWidget(bar);
  layout->addWidget(new Hairline);
  layout->addLayout(detail_ = new QVBoxLayout, 1);
  return column;
}

QSplitterHandle* NavigationSplit::createHandle() { return new LineHandle(*this); }

void NavigationSplit::setSidebar(QWidget* content) {
  auto& layout = static_cast<QBoxLayout&>(*sidebar_->layout());
  replaceContents(layout, content == nullptr ? std::vector<QWidget*>() : std::vector{content}, 1);
  walkFromSidebarToHandle();
}

// The keyboard would come to the line first, since that was there before any contents.
void NavigationSplit::walkFromSidebarToHandle() {
  QWidget* last = nullptr;
  for (QWidget* next = sidebar_->nextInFocusChain(); next != sidebar_; next = next->nextInFocusChain()) {
    if (sidebar_->isAncestorOf(next) && next->focusPolicy() != Qt::NoFocus) last = next;
  }
  if (last != nullptr) setTabOrder(last, handle(1));
}

void NavigationSplit::setDetail(QWidget* content) {
  replaceContents(*detail_, content == nullptr ? std::vector<QWidget*>() : std::vector{content}, 1);
}

// Beside the leading items, whichever way the words of the title are read.
void NavigationSplit::alignTitle() {
  const auto side = isRightToLeft() ? Qt::AlignRight : Qt::AlignLeft;
  title_->setAlignment(side | Qt::AlignAbsolute | Qt::AlignVCenter);
}

void NavigationSplit::changeEvent(QEvent* event) {
  QSplitter::changeEvent(event);
  if (event->type() == QEvent::LayoutDirectionChange) alignTitle();
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
