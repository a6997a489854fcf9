#include "backends/qt/presenters/text_host.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QTimer>
#include <memory>
#include <optional>
#include <utility>

#include "backends/qt/text/rich/rich_text_editor.h"
#include "backends/qt/text/rich/rich_text_formats.h"
#include "backends/qt/text/rich/rich_text_view.h"
#include "backends/qt/theme/colors.h"
#include "backends/qt/theme/fonts.h"
#include "backends/qt/theme/text.h"
#include "backends/qt/tree/presenter.h"
#include "backends/qt/widgets/text_editor.h"
#include "platform/appkit/scroll_view.h"

// Text views of the toolkit, each mirrored in a widget: two to write in, and one that shows texts of any
// size.
namespace tarnix::qt {
namespace {

std::shared_ptr<NSScrollView> scrollViewOf(const Element& element) {
  return std::dynamic_pointer_cast<NSScrollView>(element.as<elements::HostedView>()->view);
}

enum class Use { reading, writing, writingRich };

Use useOf(const NSTextView& text) {
  if (!text.isEditable()) return Use::reading;
  if (text.textStorage()->isPlain()) return Use::writing;
  return text.string().size() <= RichTextEditor::kMostBytes ? Use::writingRich : Use::reading;
}

void showText(RichTextView& widget, const NSTextView& text) {
  const NSTextStorage& storage = *text.textStorage();
  widget.setSelectable(text.isSelectable());
  widget.setRowLimit(text.textContainer()->maximumNumberOfLines());
  if (!storage.isPlain()) return widget.setAttributedText(storage.attributedString());
  const QFont font = fontFor(*storage.plainFont(), QGuiApplication::font());
  if (widget.font() != font) widget.setFont(font);
  widget.setText(storage.string());
}

void showText(TextEditor& widget, const NSTextView& text) {
  widget.setFont(fontFor(text.textStorage()->plainFont().value_or(NSFont()), QGuiApplication::font()));
  widget.setUndoRedoEnabled(text.allowsUndo());
  widget.setText(text.string());
}

void showText(RichTextEditor& widget, const NSTextView& text) {
  const QPalette& palette = widget.palette();
  const QColor ground =
      text.drawsBackground() ? colorOf(text.backgroundColor(), palette) : palette.color(QPalette::Base);
  widget.setUndoRedoEnabled(text.allowsUndo());
  widget.setAttributedText(text.attributedString(),
                           textColors(palette, ground, text.usesAdaptiveColorMappingForDarkAppearance()));
}

// What the text lies on, beside that of the palette, which shows through where neither view has one.
void showGround(RichTextView& widget, const NSTextView& text) {
  const auto own = text.drawsBackground() ? std::optional(text.backgroundColor()) : std::nullopt;
  widget.setGround(own, text.usesAdaptiveColorMappingForDarkAppearance());
}

void showGround(TextEditor&, const NSTextView&) {}

void connectText(RichTextView& widget, const std::shared_ptr<NSTextView>&) {
  widget.setOpenLink([](const String& link) { NSTextView::clickedOnLink(link); });
}

void connectText(RichTextEditor& widget, const std::shared_ptr<NSTextView>& text) {
  widget.setEdited([weak = std::weak_ptr(text)](const NSAttributedString& edited) {
    if (const auto view = weak.lock()) view->textWasEdited(edited);
  });
}

void connectText(TextEditor& widget, const std::shared_ptr<NSTextView>& text) {
  widget.setEdited([weak = std::weak_ptr(text)](const String& edited) {
    if (const auto view = weak.lock()) view->textWasEdited(edited);
  });
}

QFrame::Shape shapeOf(NSBorderType border) {
  if (border == NSBorderType::noBorder) return QFrame::NoFrame;
  return border == NSBorderType::lineBorder ? QFrame::Box : QFrame::StyledPanel;
}

template <typename Widget>
class TextHostPresenter : public WidgetPresenter<Widget> {
 public:
  TextHostPresenter(Rendering& rendering, Use use) : WidgetPresenter<Widget>(rendering), use_(use) {
    this->widget()->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    mirror_.setSingleShot(true);
    QObject::connect(&mirror_, &QTimer::timeout, this->widget(), [this] { mirror(); });
  }

  QString ownName() const override { return localized("Text"); }
  bool canShow(const Element& element) const override {
    const auto scrollView = scrollViewOf(element);
    return scrollView && scrollView->documentView() && useOf(*scrollView->documentView()) == use_;
  }
  void show(const Element& element) override {
    if (auto scrollView = scrollViewOf(element); scrollView != scrollView_) follow(std::move(scrollView));
    mirror();
  }

 private:
  // What changes is mirrored once for a turn.
  void follow(std::shared_ptr<NSScrollView> scrollView) {
    scrollView_ = std::move(scrollView);
    const auto changed = [this](const Void&) { mirror_.start(0); };
    scrollViewChanges_ = scrollView_->changes().sink(changed);
    textChanges_ = scrollView_->documentView()->changes().sink(changed);
    connectText(*this->widget(), scrollView_->documentView());
  }

  void mirror() {
    mirror_.stop();
    Widget& widget = *this->widget();
    if (widget.frameShape() != shapeOf(scrollView_->borderType()))
      widget.setFrameShape(shapeOf(scrollView_->borderType()));
    if (widget.viewport()->autoFillBackground() != scrollView_->drawsBackground())
      widget.viewport()->setAutoFillBackground(scrollView_->drawsBackground());
    showGround(widget, *scrollView_->documentView());
    showText(widget, *scrollView_->documentView());
  }

  Use use_;
  std::shared_ptr<NSScrollView> scrollView_;
  QTimer mirror_;
  AnyCancellable scrollViewChanges_;
  AnyCancellable textChanges_;
};

}  // namespace

std::unique_ptr<Presenter> textPresenterFor(Rendering& rendering, const Element& element) {
  const auto scrollView = scrollViewOf(element);
  if (!scrollView || !scrollView->documentView()) return nullptr;
  switch (const Use use = useOf(*scrollView->documentView())) {
    case Use::writing:
      return std::make_unique<TextHostPresenter<TextEditor>>(rendering, use);
    case Use::writingRich:
      return std::make_unique<TextHostPresenter<RichTextEditor>>(rendering, use);
    case Use::reading:
      return std::make_unique<TextHostPresenter<RichTextView>>(rendering, use);
  }
  return nullptr;
}

}  // namespace tarnix::qt
