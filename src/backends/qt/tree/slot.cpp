#include "backends/qt/tree/slot.h"

#include <type_traits>

#include "backends/qt/theme/text.h"

namespace tarnix::qt {
namespace {

std::unique_ptr<Presenter> makePresenter(Rendering& rendering, const Element& element) {
  const auto make = [&](const auto& kind) {
    return presenterFor<std::decay_t<decltype(kind)>>(rendering, element);
  };
  return std::visit(make, element.content);
}

}  // namespace

Slot::Slot(Rendering& rendering) : rendering_(rendering) {}
Slot::Slot(Slot&&) noexcept = default;

Slot::~Slot() {
  attachments_.clear();
  presenter_.reset();
}

QWidget* Slot::widget() const {
  if (QWidget* const outermost = wrappings_.outermost()) return outermost;
  return presenter_ ? presenter_->widget() : nullptr;
}

bool Slot::fits(const Element& element) const {
  const bool isSame = kind_ == element.content.index() && identities_ == element.identities;
  return isSame && presenter_ && presenter_->canShow(element);
}

bool Slot::show(const Element& element, QWidget* anchor) {
  if (shown_.lock().get() == &element) return false;
  shown_ = element.weak_from_this();
  const QWidget* const former = widget();
  const bool isKept = fits(element);
  if (!isKept) remake(element);
  if (presenter_) {
    presenter_->anchorTo(anchor);
    presenter_->show(element);
    showNames(element);
    showAttachments(element);
  }
  if (presenter_ && presenter_->widget() != nullptr) wrappings_.show(element, *presenter_->widget());
  return !isKept || widget() != former;
}

void Slot::remake(const Element& element) {
  attachments_.clear();
  presenter_.reset();
  wrappings_.clear();
  kind_ = element.content.index();
  identities_ = element.identities;
  presenter_ = makePresenter(rendering_, element);
}

void Slot::showNames(const Element& element) {
  QWidget* const content = presenter_->widget();
  if (content == nullptr) return;
  const auto* label = element.modifier<modifiers::AccessibilityLabel>();
  const QString name = label == nullptr ? presenter_->ownName() : localizedText(label->text);
  if (content->accessibleName() != name) content->setAccessibleName(name);
  if (content->isEnabledTo(content->parentWidget()) == element.isDisabled()) {
    content->setEnabled(!element.isDisabled());
  }
  const auto* help = element.modifier<modifiers::Help>();
  const QString tip = help == nullptr ? QString() : localizedText(help->text);
  if (content->toolTip() != tip) content->setToolTip(tip);
}

void Slot::showAttachments(const Element& element) {
  while (attachments_.size() > element.attachments.size()) attachments_.pop_back();
  while (attachments_.size() < element.attachments.size()) attachments_.emplace_back(rendering_);
  for (std::size_t i = 0; i < attachments_.size(); ++i)
    attachments_[i].show(element.attachments[i], presenter_->widget());
}

bool SlotList::show(const std::vector<const Element*>& elements) {
  bool isChanged = slots_.size() != elements.size();
  while (slots_.size() > elements.size()) slots_.pop_back();
  while (slots_.size() < elements.size()) slots_.emplace_back(rendering_);
  for (std::size_t i = 0; i < elements.size(); ++i) isChanged |= slots_[i].show(*elements[i]);
  return isChanged;
}

std::vector<QWidget*> SlotList::widgets() const {
  std::vector<QWidget*> widgets;
  for (const Slot& slot : slots_) {
    if (QWidget* const widget = slot.widget()) widgets.push_back(widget);
  }
  return widgets;
}

}  // namespace tarnix::qt
