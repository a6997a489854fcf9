#include "backends/qt/text/rich/rich_text_accessible.h"

#include <QPointer>

#include "backends/qt/text/rich/rich_text_view.h"
#include "backends/qt/theme/text.h"

namespace tarnix::qt {
namespace {

// Says what the link of its number is at the moment; there may be fewer later on.
class LinkAccessible final : public QAccessibleInterface, public QAccessibleActionInterface {
 public:
  LinkAccessible(RichTextView& view, std::size_t number) : view_(&view), number_(number) {}

  bool isValid() const override { return view_ != nullptr && number_ < view_->links().size(); }
  QObject* object() const override { return nullptr; }
  QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(view_); }
  int childCount() const override { return 0; }
  QAccessibleInterface* child(int) const override { return nullptr; }
  int indexOfChild(const QAccessibleInterface*) const override { return -1; }
  QAccessibleInterface* childAt(int, int) const override { return nullptr; }
  QAccessible::Role role() const override { return QAccessible::Link; }

  QString text(QAccessible::Text kind) const override {
    if (!isValid()) return {};
    const RichTextView::Link& link = view_->links()[number_];
    const TextRange range = link.range;
    if (kind == QAccessible::Name)
      return titleStart(String(view_->text().view().substr(range.begin, range.end - range.begin)));
    return kind == QAccessible::Description ? titleStart(link.target) : QString();
  }
  void setText(QAccessible::Text, const QString&) override {}

  // Of its first character.
  QRect rect() const override {
    if (!isValid()) return {};
    const TextRange range = view_->links()[number_].range;
    const QRect begin = view_->caretRect(range.begin);
    const QRect end = view_->caretRect(range.end);
    const bool isOneRow = !end.isNull() && end.top() == begin.top();
    return (isOneRow ? begin.united(end) : begin).translated(view_->viewport()->mapToGlobal(QPoint()));
  }

  QAccessible::State state() const override {
    QAccessible::State state;
    if (!isValid()) {
      state.invalid = true;
      return state;
    }
    state.linked = true;
    state.focusable = true;
    state.focused = view_->hasFocus() && view_->selection() == view_->links()[number_].range;
    state.offscreen = view_->caretRect(view_->links()[number_].range.begin).isNull();
    return state;
  }

  void* interface_cast(QAccessible::InterfaceType type) override {
    return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this) : nullptr;
  }
  QStringList actionNames() const override { return {pressAction(), setFocusAction()}; }
  void doAction(const QString& name) override {
    if (!isValid()) return;
    const RichTextView::Link link = view_->links()[number_];
    if (name == pressAction()) view_->open(link);
    if (name != setFocusAction()) return;
    view_->setFocus();
    view_->goTo(link);
  }
  QStringList keyBindingsForAction(const QString&) const override { return {}; }

 private:
  QPointer<RichTextView> view_;
  std::size_t number_;
};

QAccessibleInterface* makeRichTextAccessible(const QString&, QObject* object) {
  auto* view = dynamic_cast<RichTextView*>(object);
  return view == nullptr ? nullptr : new RichTextAccessible(view);
}

}  // namespace

RichTextAccessible::RichTextAccessible(RichTextView* view) : PlainTextAccessible(view) {}

RichTextAccessible::~RichTextAccessible() {
  for (const QAccessible::Id each : links_) QAccessible::deleteAccessibleInterface(each);
}

RichTextView& RichTextAccessible::view() const { return static_cast<RichTextView&>(*widget()); }

int RichTextAccessible::childCount() const { return static_cast<int>(view().links().size()); }

QAccessibleInterface* RichTextAccessible::child(int index) const {
  if (index < 0 || index >= childCount()) return nullptr;
  const auto number = static_cast<std::size_t>(index);
  while (links_.size() <= number)
    links_.push_back(QAccessible::registerAccessibleInterface(new LinkAccessible(view(), links_.size())));
  return QAccessible::accessibleInterface(links_[number]);
}

int RichTextAccessible::indexOfChild(const QAccessibleInterface* child) const {
  for (std::size_t i = 0; i < links_.size(); ++i) {
    if (QAccessible::accessibleInterface(links_[i]) == child) return static_cast<int>(i);
  }
  return -1;
}

QAccessibleInterface* RichTextAccessible::childAt(int x, int y) const {
  for (int i = 0; i < childCount(); ++i) {
    if (child(i)->rect().contains(x, y)) return child(i);
  }
  return nullptr;
}

void installRichTextAccessibility() { QAccessible::installFactory(makeRichTextAccessible); }

void announceLink(RichTextView& view, std::size_t number) {
  if (!QAccessible::isActive()) return;
  QAccessibleEvent event(&view, QAccessible::Focus);
  event.setChild(static_cast<int>(number));
  QAccessible::updateAccessibility(&event);
}

}  // namespace tarnix::qt
