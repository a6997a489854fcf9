#include <QBoxLayout>
#include <algorithm>

#include "backends/qt/tree/slot.h"
#include "backends/qt/widgets/hairline.h"

namespace tarnix::qt {
namespace {

constexpr int kStackSpacing = 8;

// Takes the room that its neighbours leave, along the stack it stands in.
class SpacerWidget : public QWidget {
 public:
  SpacerWidget() { setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored); }
};

bool isSpacer(QWidget* widget) { return dynamic_cast<SpacerWidget*>(widget) != nullptr; }
bool isHairline(QWidget* widget) { return dynamic_cast<Hairline*>(widget) != nullptr; }

// Children in a row, centred across it. Those that can grow along the row share what is left; spacers get it
// only where no other child wants it.
class StackPresenter : public WidgetPresenter<QWidget> {
 public:
  StackPresenter(Rendering& rendering, Qt::Orientation orientation)
      : WidgetPresenter(rendering), orientation_(orientation), children_(rendering) {
    const bool isVertical = orientation == Qt::Vertical;
    layout_ = new QBoxLayout(isVertical ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight, widget());
    layout_->setContentsMargins({});
    layout_->setSpacing(0);
  }

  void show(const Element& element) override {
    std::vector<const Element*> elements;
    for (const Element& child : element.children) elements.push_back(&child);
    if (children_.show(elements)) arrange();
  }

 private:
  bool grows(QWidget* child) const {
    return !isSpacer(child) && (QWidgetItem(child).expandingDirections() & orientation_);
  }

  void arrange() {
    while (layout_->count() > 0) delete layout_->takeAt(0);
    const auto children = children_.widgets();
    for (QWidget* const child : children) adopt(child);
    const bool isFilled = std::ranges::any_of(children, [&](QWidget* child) { return grows(child); });
    const bool isSpread = isFilled || std::ranges::any_of(children, isSpacer);
    if (!isSpread) layout_->addStretch(1);
    QWidget* former = nullptr;
    for (QWidget* const child : children) {
      if (needsSpace(former, child)) layout_->addSpacing(kStackSpacing);
      add(child, isFilled);
      former = child;
    }
    if (!isSpread) layout_->addStretch(1);
  }

  // Layouts take no account of widgets that are windows or hidden, as new ones are.
  void adopt(QWidget* child) {
    if (auto* hairline = dynamic_cast<Hairline*>(child)) hairline->setAcross(orientation_);
    if (child->parentWidget() == widget() || isSpacer(child)) return;
    child->setParent(widget());
    child->show();
  }

  // Only contents keep a distance; what parts or fills does not.
  bool needsSpace(QWidget* former, QWidget* next) const {
    const auto isContent = [&](QWidget* child) {
      return !isSpacer(child) && !isHairline(child) && !grows(child);
    };
    return former != nullptr && isContent(former) && isContent(next);
  }

  void add(QWidget* child, bool isFilled) {
    if (isSpacer(child)) {
      // Expanding, so that the stacks around this one see that it can grow.
      const auto policy = isFilled ? QSizePolicy::Minimum : QSizePolicy::Expanding;
      layout_->addItem(orientation_ == Qt::Vertical ? new QSpacerItem(0, 0, QSizePolicy::Minimum, policy)
                                                    : new QSpacerItem(0, 0, policy, QSizePolicy::Minimum));
      return;
    }
    layout_->addWidget(child, grows(child) ? 1 : 0, alignment(child));
  }

  Qt::Alignment alignment(QWidget* child) const {
    const Qt::Orientation across = orientation_ == Qt::Vertical ? Qt::Horizontal : Qt::Vertical;
    const bool fills = (QWidgetItem(child).expandingDirections() & across) || child->hasHeightForWidth();
    if (fills) return {};
    return orientation_ == Qt::Vertical ? Qt::AlignHCenter : Qt::AlignVCenter;
  }

  Qt::Orientation orientation_;
  QBoxLayout* layout_;
  SlotList children_;
};

class SpacerPresenter : public WidgetPresenter<SpacerWidget> {
 public:
  using WidgetPresenter::WidgetPresenter;
  void show(const Element&) override {}
};

class DividerPresenter : public WidgetPresenter<Hairline> {
 public:
  using WidgetPresenter::WidgetPresenter;
  void show(const Element&) override {}
};

}  // namespace

template <>
std::unique_ptr<Presenter> presenterFor<elements::VStack>(Rendering& rendering, const Element&) {
  return std::make_unique<StackPresenter>(rendering, Qt::Vertical);
}

template <>
std::unique_ptr<Presenter> presenterFor<elements::HStack>(Rendering& rendering, const Element&) {
  return std::make_unique<StackPresenter>(rendering, Qt::Horizontal);
}

template <>
std::unique_ptr<Presenter> presenterFor<elements::Spacer>(Rendering& rendering, const Element&) {
  return std::make_unique<SpacerPresenter>(rendering);
}

template <>
std::unique_ptr<Presenter> presenterFor<elements::Divider>(Rendering& rendering, const Element&) {
  return std::make_unique<DividerPresenter>(rendering);
}

}  // namespace tarnix::qt
