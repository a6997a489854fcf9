#include "backends/qt/slot.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QMargins>

#include "backends/qt/kinds.h"
#include "backends/qt/text.h"

namespace tarnix::qt {
namespace {

constexpr int kStandardPadding = 16;

// All paddings of an element together; a later one lies around an earlier one.
QMargins paddingOf(const Element& element) {
  QMarginsF sum;
  for (const auto& modifier : element.modifiers) {
    const auto* padding = std::get_if<modifiers::Padding>(&modifier);
    if (padding == nullptr) continue;
    sum += padding->isStandard
               ? QMarginsF(kStandardPadding, kStandardPadding, kStandardPadding, kStandardPadding)
               : QMarginsF(padding->leading, padding->top, padding->trailing, padding->bottom);
  }
  return sum.toMargins();
}

}  // namespace

class PaddedWidget : public QWidget {
 public:
  explicit PaddedWidget(QWidget* content) {
    auto* const layout = new QHBoxLayout(this);
    layout->setSpacing(0);
    layout->addWidget(content);
    content->show();
  }

  // From the leading to the trailing edge, which are the other way round where one reads from the right.
  void setPadding(const QMargins& padding) {
    padding_ = padding;
    const bool isMirrored = isRightToLeft();
    layout()->setContentsMargins(isMirrored ? padding.right() : padding.left(), padding.top(),
                                 isMirrored ? padding.left() : padding.right(), padding.bottom());
  }

 protected:
  void changeEvent(QEvent* event) override {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LayoutDirectionChange) setPadding(padding_);
  }

 private:
  QMargins padding_;
};

Slot::Slot(Rendering& rendering) : rendering_(rendering) {}
Slot::Slot(Slot&&) noexcept = default;

Slot::~Slot() {
  attachments_.clear();
  presenter_.reset();
}

QWidget* Slot::widget() const {
  if (padded_) return padded_.get();
  return presenter_ ? presenter_->widget() : nullptr;
}

bool Slot::fits(const Element& element) const {
  const bool isSame = kind_ == element.content.index() && identity_ == element.identity;
  return isSame && presenter_ && presenter_->canShow(element);
}

bool Slot::show(const Element& element) {
  const QWidget* const former = widget();
  const bool isKept = fits(element);
  if (!isKept) remake(element);
  if (presenter_) {
    presenter_->show(element);
    showPadding(element);
    showNames(element);
    showAttachments(element);
  }
  return !isKept || widget() != former;
}

void Slot::remake(const Element& element) {
  attachments_.clear();
  presenter_.reset();
  padded_.reset();
  kind_ = element.content.index();
  identity_ = element.identity;
  presenter_ = makePresenter(rendering_, element);
}

void Slot::showPadding(const Element& element) {
  QWidget* const content = presenter_->widget();
  if (content == nullptr) return;
  const QMargins padding = paddingOf(element);
  if (!padded_ && !padding.isNull()) padded_ = std::make_unique<PaddedWidget>(content);
  if (padded_) padded_->setPadding(padding);
}

void Slot::showNames(const Element& element) {
  QWidget* const content = presenter_->widget();
  if (content == nullptr) return;
  if (const auto* label = element.modifier<modifiers::AccessibilityLabel>()) {
    content->setAccessibleName(toQString(label->text));
  }
  const auto* help = element.modifier<modifiers::Help>();
  const QString tip = help == nullptr ? QString() : toQString(help->text);
  if (content->toolTip() != tip) content->setToolTip(tip);
}

void Slot::showAttachments(const Element& element) {
  while (attachments_.size() > element.attachments.size()) attachments_.pop_back();
  while (attachments_.size() < element.attachments.size()) attachments_.emplace_back(rendering_);
  for (std::size_t i = 0; i < attachments_.size(); ++i) attachments_[i].show(element.attachments[i]);
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
