#include <QHBoxLayout>
#include <QLabel>

#include "backends/qt/fonts.h"
#include "backends/qt/kinds.h"
#include "backends/qt/symbol_widget.h"
#include "backends/qt/symbols.h"
#include "backends/qt/text.h"

namespace tarnix::qt {
namespace {

QPalette::ColorRole roleFor(const modifiers::ForegroundStyle* style) {
  if (style == nullptr) return QPalette::WindowText;
  switch (*style) {
    case modifiers::ForegroundStyle::secondary:
      return QPalette::PlaceholderText;
    case modifiers::ForegroundStyle::accent:
      return QPalette::Link;
    case modifiers::ForegroundStyle::primary:
      break;
  }
  return QPalette::WindowText;
}

void showStyle(QWidget& widget, const Element& element) {
  const QFont font = fontFor(element.modifier<modifiers::Font>());
  if (widget.font() != font) widget.setFont(font);
  const auto role = roleFor(element.modifier<modifiers::ForegroundStyle>());
  if (widget.foregroundRole() != role) widget.setForegroundRole(role);
}

void showSymbol(SymbolWidget& widget, const String& name, const Element& element) {
  widget.setSymbol(toQString(name));
  widget.setSide(symbolSide(element.modifier<modifiers::Font>()));
  widget.setTone(roleFor(element.modifier<modifiers::ForegroundStyle>()));
  const auto* mode = element.modifier<modifiers::SymbolRenderingMode>();
  widget.setRenderingMode(mode == nullptr ? modifiers::SymbolRenderingMode::monochrome : *mode);
}

class TextLabel : public QLabel {
 public:
  // What a text says is never taken for markup.
  TextLabel() { setTextFormat(Qt::PlainText); }
};

// A text stands in the middle of the room it gets; its lines are flush unless they are to be centred.
class TextPresenter : public WidgetPresenter<TextLabel> {
 public:
  explicit TextPresenter(Rendering& rendering) : WidgetPresenter(rendering) { widget()->setWordWrap(true); }

  void show(const Element& element) override {
    showStyle(*widget(), element);
    const auto* alignment = element.modifier<modifiers::TextAlignment>();
    const QString text = toQString(element.as<elements::Text>()->text);
    const bool isCentred =
        alignment != nullptr ? *alignment == modifiers::TextAlignment::center : !text.contains(QChar(u'\n'));
    widget()->setAlignment(Qt::AlignVCenter | (isCentred ? Qt::AlignHCenter : Qt::AlignLeading));
    if (widget()->text() != text) widget()->setText(text);
  }
};

class ImagePresenter : public WidgetPresenter<SymbolWidget> {
 public:
  using WidgetPresenter::WidgetPresenter;
  void show(const Element& element) override {
    showSymbol(*widget(), element.as<elements::Image>()->systemName, element);
  }
};

// A symbol with its title beside it, or the symbol alone.
class LabelPresenter : public WidgetPresenter<QWidget> {
 public:
  explicit LabelPresenter(Rendering& rendering) : WidgetPresenter(rendering) {
    auto* const layout = new QHBoxLayout(widget());
    layout->setContentsMargins({});
    layout->addWidget(symbol_);
    layout->addWidget(title_);
  }

  void show(const Element& element) override {
    const auto& label = *element.as<elements::Label>();
    showSymbol(*symbol_, label.systemName, element);
    showStyle(*title_, element);
    const QString title = toQString(label.title);
    if (title_->text() != title) title_->setText(title);
    const auto* style = element.modifier<modifiers::LabelStyle>();
    const bool isIconOnly = style != nullptr && *style == modifiers::LabelStyle::iconOnly;
    title_->setVisible(!isIconOnly && !title.isEmpty());
    symbol_->setAccessibleName(isIconOnly ? title : QString());
  }

 private:
  // Owned by the widget around them.
  SymbolWidget* symbol_ = new SymbolWidget;
  TextLabel* title_ = new TextLabel;
};

}  // namespace

std::unique_ptr<Presenter> makeText(Rendering& rendering, const Element& element) {
  return make<TextPresenter>(rendering, element);
}

std::unique_ptr<Presenter> makeImage(Rendering& rendering, const Element& element) {
  return make<ImagePresenter>(rendering, element);
}

std::unique_ptr<Presenter> makeLabel(Rendering& rendering, const Element& element) {
  return make<LabelPresenter>(rendering, element);
}

}  // namespace tarnix::qt
