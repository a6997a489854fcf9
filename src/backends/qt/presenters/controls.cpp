#include <QCheckBox>
#include <QPushButton>

#include "backends/qt/theme/fonts.h"
#include "backends/qt/theme/symbols.h"
#include "backends/qt/theme/text.h"
#include "backends/qt/tree/presenter.h"
#include "backends/qt/widgets/switch_button.h"
#include "backends/qt/widgets/symbol_button.h"
#include "platform/swiftui/label.h"

namespace tarnix::qt {
namespace {

bool isSwitch(const Element& element) {
  const auto* style = element.modifier<modifiers::ToggleStyle>();
  return style != nullptr && *style == modifiers::ToggleStyle::switchControl;
}

enum class ToggleLook { box, switchControl, pill };

// A toggle with a symbol is a button that stays pressed.
ToggleLook lookOf(const Element& element) {
  if (isSwitch(element)) return ToggleLook::switchControl;
  return labelOf(element).systemName.empty() ? ToggleLook::box : ToggleLook::pill;
}

void showSymbol(QAbstractButton&, const Element&) {}
void showSymbol(SymbolButton& button, const Element& element) {
  const LabelParts label = labelOf(element);
  button.setCheckable(true);
  button.setSymbol(toQString(label.systemName), symbolSide(element.modifier<modifiers::Font>()));
  button.setTitle(shownTitle(label), true);
}

// A toggle as one of Qt's checkable buttons.
template <typename Checkable>
class TogglePresenter : public WidgetPresenter<Checkable> {
 public:
  TogglePresenter(Rendering& rendering, ToggleLook look)
      : WidgetPresenter<Checkable>(rendering), look_(look) {
    QObject::connect(this->widget(), &QAbstractButton::toggled, this->widget(),
                     [this](bool isOn) { write(isOn); });
  }

  bool canShow(const Element& element) const override { return lookOf(element) == look_; }

  void show(const Element& element) override {
    const auto& toggle = *element.as<elements::Toggle>();
    isOn_ = toggle.isOn;
    showSymbol(*this->widget(), element);
    label_ = toggle.label.empty() ? shownTitle(labelOf(element)) : localizedText(toggle.label);
    if (this->widget()->text() != label_) {
      this->widget()->setText(label_);
      this->widget()->updateGeometry();
    }
    this->widget()->setChecked(toggle.isOn.get());
  }
  QString ownName() const override { return label_; }

 private:
  void write(bool isOn) {
    if (this->call(isOn_.get) != isOn) this->call(isOn_.set, isOn);
  }

  ToggleLook look_;
  QString label_;
  Binding<bool> isOn_;
};

bool isBorderless(const Element& button) {
  const auto* style = button.modifier<modifiers::ButtonStyle>();
  const bool isAskedFor = style != nullptr && *style == modifiers::ButtonStyle::borderless;
  return isAskedFor || labelOf(button).title.empty();
}

template <typename Clickable>
class ButtonPresenter : public WidgetPresenter<Clickable> {
 public:
  explicit ButtonPresenter(Rendering& rendering) : WidgetPresenter<Clickable>(rendering) {
    QObject::connect(this->widget(), &QAbstractButton::clicked, this->widget(), [this] {
      if (action_) this->call(action_);
    });
  }

  void show(const Element& element) override {
    action_ = element.as<elements::Button>()->action;
    showLabel(element, labelOf(element));
  }

 protected:
  virtual void showLabel(const Element& element, const LabelParts& label) = 0;

 private:
  std::function<void()> action_;
};

class BorderlessButtonPresenter : public ButtonPresenter<SymbolButton> {
 public:
  using ButtonPresenter::ButtonPresenter;
  bool canShow(const Element& element) const override { return isBorderless(element); }
  QString ownName() const override { return title_; }

 protected:
  void showLabel(const Element& element, const LabelParts& label) override {
    const int side = symbolSide(element.modifier<modifiers::Font>());
    const QString symbol = toQString(label.systemName);
    widget()->setSymbol(symbol, symbol.isEmpty() ? 0 : side);
    const auto* style = element.modifier<modifiers::LabelStyle>();
    const bool isIconOnly = style != nullptr && *style == modifiers::LabelStyle::iconOnly;
    const bool hasTitle = !label.title.empty();
    title_ = hasTitle ? shownTitle(label) : symbolMeaning(symbol);
    widget()->setTitle(title_, hasTitle && !isIconOnly);
  }

 private:
  QString title_;
};

class PushButtonPresenter : public ButtonPresenter<QPushButton> {
 public:
  using ButtonPresenter::ButtonPresenter;
  bool canShow(const Element& element) const override { return !isBorderless(element); }

 protected:
  void showLabel(const Element&, const LabelParts& label) override {
    // An ampersand of the title is not a mnemonic.
    const QString text = shownTitle(label).replace(u'&', QStringLiteral("&&"));
    if (widget()->text() != text) widget()->setText(text);
  }
};

}  // namespace

template <>
std::unique_ptr<Presenter> presenterFor<elements::Toggle>(Rendering& rendering, const Element& element) {
  switch (const ToggleLook look = lookOf(element)) {
    case ToggleLook::switchControl:
      return std::make_unique<TogglePresenter<SwitchButton>>(rendering, look);
    case ToggleLook::pill:
      return std::make_unique<TogglePresenter<SymbolButton>>(rendering, look);
    case ToggleLook::box:
      return std::make_unique<TogglePresenter<QCheckBox>>(rendering, look);
  }
  return nullptr;
}

template <>
std::unique_ptr<Presenter> presenterFor<elements::Button>(Rendering& rendering, const Element& element) {
  if (isBorderless(element)) return std::make_unique<BorderlessButtonPresenter>(rendering);
  return std::make_unique<PushButtonPresenter>(rendering);
}

}  // namespace tarnix::qt
