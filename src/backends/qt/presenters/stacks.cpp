#include <QBoxLayout>
#include <algorithm>
#include <utility>

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

// What stands in a group stands where the group does.
void collect(const Elements& children, std::vector<const Element*>& elements) {
  for (const Element& child : children) {
    if (child.as<elements::Group>() != nullptr) {
      collect(child.children, elements);
    } else {
      elements.push_back(&child);
    }
  }
}

int spacingOf(const Element& element) {
  const auto* vertical = element.as<elements::VStack>();
  const auto* horizontal = element.as<elements::HStack>();
  const elements::Spacing spacing = vertical != nullptr     ? vertical->spacing
                                    : horizontal != nullptr ? horizontal->spacing
                                                            : elements::Spacing();
  return spacing ? qRound(*spacing) : kStackSpacing;
}

// Also one that something lies around.
Hairline* hairlineIn(QWidget* widget) {
  if (auto* const hairline = dynamic_cast<Hairline*>(widget)) return hairline;
  if (dynamic_cast<Wrapping*>(widget) == nullptr) return nullptr;
  for (QObject* const child : widget->children()) {
    auto* const inner = qobject_cast<QWidget*>(child);
    if (Hairline* const found = inner == nullptr ? nullptr : hairlineIn(inner)) return found;
  }
  return nullptr;
}

bool isSpacer(QWidget* widget) { return dynamic_cast<SpacerWidget*>(widget) != nullptr; }
bool isHairline(QWidget* widget) { return hairlineIn(widget) != nullptr; }

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
    collect(element.children, elements);
    const bool isOther = std::exchange(spacing_, spacingOf(element)) != spacing_;
    if (children_.show(elements) || isOther) arrange();
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
    // What a line parts from the rest is a bar, which takes no more room than it needs.
    const bool isBar = std::ranges::any_of(children, isHairline);
    const bool isSpread = isFilled || isBar || std::ranges::any_of(children, isSpacer);
    if (!isSpread) layout_->addStretch(1);
    QWidget* former = nullptr;
    for (QWidget* const child : children) {
      if (needsSpace(former, child)) layout_->addSpacing(spacing_);
      add(child, isFilled);
      former = child;
    }
    if (!isSpread) layout_->addStretch(1);
  }

  // Layouts take no account of widgets that are windows or hidden, as new ones are.
  void adopt(QWidget* child) {
    if (Hairline* const hairline = hairlineIn(child)) {
      hairline->setAcross(orientation_);
      if (hairline != child) hairline->parentWidget()->layout()->setAlignment(hairline, {});
    }
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
  int spacing_ = kStackSpacing;
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
std::unique_ptr<Presenter> presenterFor<elements::Group>(Rendering& rendering, const Element&) {
  return std::make_unique<StackPresenter>(rendering, Qt::Vertical);
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
