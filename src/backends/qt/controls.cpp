#include <QCheckBox>
#include <QPushButton>

#include "backends/qt/fonts.h"
#include "backends/qt/kinds.h"
#include "backends/qt/switch_button.h"
#include "backends/qt/symbol_button.h"
#include "backends/qt/symbols.h"
#include "backends/qt/text.h"

namespace tarnix::qt {
namespace {

bool isSwitch(const Element& element) {
  const auto* style = element.modifier<modifiers::ToggleStyle>();
  return style != nullptr && *style == modifiers::ToggleStyle::switchControl;
}

// What the label of a control says, whichever way it says it.
struct ControlLabel {
  QString title;
  QString symbol;
};

ControlLabel labelOf(const Element& control) {
  ControlLabel label;
  for (const Element& part : control.children) {
    if (const auto* text = part.as<elements::Text>()) label.title = toQString(text->text);
    if (const auto* image = part.as<elements::Image>()) label.symbol = toQString(image->systemName);
    if (const auto* both = part.as<elements::Label>()) {
      label = {toQString(both->title), toQString(both->systemName)};
    }
  }
  return label;
}

// A toggle as one of Qt's checkable buttons.
template <typename Checkable>
class TogglePresenter : public WidgetPresenter<Checkable> {
 public:
  TogglePresenter(Rendering& rendering, bool isSwitch)
      : WidgetPresenter<Checkable>(rendering), isSwitch_(isSwitch) {
    QObject::connect(this->widget(), &QAbstractButton::toggled, this->widget(),
                     [this](bool isOn) { write(isOn); });
  }

  bool canShow(const Element& element) const override { return isSwitch(element) == isSwitch_; }

  void show(const Element& element) override {
    const auto& toggle = *element.as<elements::Toggle>();
    isOn_ = toggle.isOn;
    const QString label = toggle.label.empty() ? labelOf(element).title : toQString(toggle.label);
    if (this->widget()->text() != label) {
      this->widget()->setText(label);
      this->widget()->setAccessibleName(label);
      this->widget()->updateGeometry();
    }
    this->widget()->setChecked(toggle.isOn.get());
  }

 private:
  void write(bool isOn) {
    if (this->call(isOn_.get) != isOn) this->call(isOn_.set, isOn);
  }

  bool isSwitch_;
  Binding<bool> isOn_;
};

bool isBorderless(const Element& button) {
  const auto* style = button.modifier<modifiers::ButtonStyle>();
  const bool isAskedFor = style != nullptr && *style == modifiers::ButtonStyle::borderless;
  return isAskedFor || labelOf(button).title.isEmpty();
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
  virtual void showLabel(const Element& element, const ControlLabel& label) = 0;

 private:
  std::function<void()> action_;
};

class BorderlessButtonPresenter : public ButtonPresenter<SymbolButton> {
 public:
  using ButtonPresenter::ButtonPresenter;
  bool canShow(const Element& element) const override { return isBorderless(element); }

 protected:
  void showLabel(const Element& element, const ControlLabel& label) override {
    const int side = symbolSide(element.modifier<modifiers::Font>());
    widget()->setSymbol(label.symbol, label.symbol.isEmpty() ? 0 : side);
    const auto* style = element.modifier<modifiers::LabelStyle>();
    const bool isIconOnly = style != nullptr && *style == modifiers::LabelStyle::iconOnly;
    if (label.title.isEmpty()) {
      widget()->setTitle(symbolMeaning(label.symbol), false);
    } else {
      widget()->setTitle(label.title, !isIconOnly);
    }
  }
};

class PushButtonPresenter : public ButtonPresenter<QPushButton> {
 public:
  using ButtonPresenter::ButtonPresenter;
  bool canShow(const Element& element) const override { return !isBorderless(element); }

 protected:
  void showLabel(const Element&, const ControlLabel& label) override {
    // An ampersand of the title is not a mnemonic.
    const QString text = QString(label.title).replace(u'&', QStringLiteral("&&"));
    if (widget()->text() != text) widget()->setText(text);
  }
};

}  // namespace

std::unique_ptr<Presenter> makeToggle(Rendering& rendering, const Element& element) {
  if (isSwitch(element)) return std::make_unique<TogglePresenter<SwitchButton>>(rendering, true);
  return std::make_unique<TogglePresenter<QCheckBox>>(rendering, false);
}

std::unique_ptr<Presenter> makeButton(Rendering& rendering, const Element& element) {
  if (isBorderless(element)) return make<BorderlessButtonPresenter>(rendering, element);
  return make<PushButtonPresenter>(rendering, element);
}

}  // namespace tarnix::qt
