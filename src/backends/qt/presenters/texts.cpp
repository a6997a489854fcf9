#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <optional>
#include <utility>

#include "backends/qt/theme/fonts.h"
#include "backends/qt/theme/icons.h"
#include "backends/qt/theme/symbols.h"
#include "backends/qt/theme/text.h"
#include "backends/qt/tree/slot.h"
#include "backends/qt/widgets/limited_text.h"
#include "backends/qt/widgets/picture_widget.h"
#include "backends/qt/widgets/symbol_widget.h"

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

// A text as it stands, cut behind its last line where there is a limit of lines.
class TextLabel : public QLabel {
 public:
  // What a text says is never taken for markup.
  TextLabel() { setTextFormat(Qt::PlainText); }

  void setLineLimit(const modifiers::LineLimit* limit) {
    const std::size_t lines = limit == nullptr ? 0 : limit->lines;
    if (std::exchange(lineLimit_, lines) != lines) updateGeometry();
  }

  QSize sizeHint() const override {
    if (lineLimit_ == 0) return QLabel::sizeHint();
    const int width = fontMetrics().horizontalAdvance(singleLine(text())) + 1;
    return {width, heightForWidth(width)};
  }
  QSize minimumSizeHint() const override {
    return lineLimit_ == 0 ? QLabel::minimumSizeHint() : QSize(0, fontMetrics().lineSpacing());
  }
  int heightForWidth(int width) const override {
    if (lineLimit_ == 0) return QLabel::heightForWidth(width);
    return limited(width).lineCount() * fontMetrics().lineSpacing();
  }

 protected:
  void paintEvent(QPaintEvent* event) override {
    if (lineLimit_ == 0) return QLabel::paintEvent(event);
    QPainter painter(this);
    painter.setPen(palette().color(foregroundRole()));
    const LimitedText text = limited(width());
    const int height = text.lineCount() * fontMetrics().lineSpacing();
    text.draw(painter, QPointF(0, (this->height() - height) / 2.0), fontMetrics().lineSpacing());
  }

 private:
  LimitedText limited(int width) const {
    return {singleLine(text()), {font(), static_cast<double>(width), lineLimit_, layoutDirection()}};
  }

  std::size_t lineLimit_ = 0;  // None.
};

// A text stands in the middle of the room it gets; its lines are flush unless they are to be centred.
class TextPresenter : public WidgetPresenter<TextLabel> {
 public:
  explicit TextPresenter(Rendering& rendering) : WidgetPresenter(rendering) { widget()->setWordWrap(true); }

  void show(const Element& element) override {
    showStyle(*widget(), element);
    const auto* alignment = element.modifier<modifiers::TextAlignment>();
    const QString text = shownText(*element.as<elements::Text>());
    const bool isCentred =
        alignment != nullptr ? *alignment == modifiers::TextAlignment::center : !text.contains(QChar(u'\n'));
    widget()->setAlignment(Qt::AlignVCenter | (isCentred ? Qt::AlignHCenter : Qt::AlignLeading));
    if (widget()->text() != text) widget()->setText(text);
    widget()->setLineLimit(element.modifier<modifiers::LineLimit>());
  }
};

class ImagePresenter : public WidgetPresenter<SymbolWidget> {
 public:
  using WidgetPresenter::WidgetPresenter;
  void show(const Element& element) override {
    showSymbol(*widget(), element.as<elements::Image>()->systemName, element);
  }
};

// An icon of the desktop's, looked for anew only where another one is asked for.
class PicturePresenter : public WidgetPresenter<PictureWidget> {
 public:
  using WidgetPresenter::WidgetPresenter;
  void show(const Element& element) override {
    const NSImage& image = element.as<elements::Picture>()->image;
    if (shown_ == image) return;
    shown_ = image;
    widget()->setIcon(iconOf(image));
  }

 private:
  std::optional<NSImage> shown_;
};

// A symbol with its title beside it, or the symbol alone; or two views of their own.
class LabelPresenter : public WidgetPresenter<QWidget> {
 public:
  explicit LabelPresenter(Rendering& rendering) : WidgetPresenter(rendering), parts_(rendering) {
    layout_ = new QHBoxLayout(widget());
    layout_->setContentsMargins({});
    layout_->addWidget(symbol_);
    layout_->addWidget(title_);
  }

  void show(const Element& element) override {
    std::vector<const Element*> parts;
    for (const Element& child : element.children) parts.push_back(&child);
    if (parts_.show(parts)) {
      // The icon comes first, though the title is told first.
      for (QWidget* const each : parts_.widgets()) {
        if (auto* const text = qobject_cast<QLabel*>(each)) text->setWordWrap(false);
        layout_->insertWidget(0, each);
      }
    }
    const auto& label = *element.as<elements::Label>();
    showSymbol(*symbol_, label.systemName, element);
    showStyle(*title_, element);
    const QString title = shownTitle({label.title, label.systemName, label.isVerbatim});
    if (title_->text() != title) title_->setText(title);
    const auto* style = element.modifier<modifiers::LabelStyle>();
    const bool isIconOnly = style != nullptr && *style == modifiers::LabelStyle::iconOnly;
    title_->setVisible(!isIconOnly && !title.isEmpty());
    symbol_->setVisible(!label.systemName.empty());
    const QString name = isIconOnly ? title : QString();
    if (symbol_->accessibleName() != name) symbol_->setAccessibleName(name);
  }

 private:
  SlotList parts_;
  // Owned by the widget around them.
  QHBoxLayout* layout_ = nullptr;
  SymbolWidget* symbol_ = new SymbolWidget;
  TextLabel* title_ = new TextLabel;
};

}  // namespace

template <>
std::unique_ptr<Presenter> presenterFor<elements::Text>(Rendering& rendering, const Element&) {
  return std::make_unique<TextPresenter>(rendering);
}

template <>
std::unique_ptr<Presenter> presenterFor<elements::Image>(Rendering& rendering, const Element&) {
  return std::make_unique<ImagePresenter>(rendering);
}

template <>
std::unique_ptr<Presenter> presenterFor<elements::Picture>(Rendering& rendering, const Element&) {
  return std::make_unique<PicturePresenter>(rendering);
}

template <>
std::unique_ptr<Presenter> presenterFor<elements::Label>(Rendering& rendering, const Element&) {
  return std::make_unique<LabelPresenter>(rendering);
}

}  // namespace tarnix::qt
