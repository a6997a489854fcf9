#include <QCoreApplication>

#include "backends/qt/kinds.h"
#include "backends/qt/plain_text_view.h"

namespace tarnix::qt {
namespace {

class TextViewPresenter : public WidgetPresenter<PlainTextView> {
 public:
  explicit TextViewPresenter(Rendering& rendering) : WidgetPresenter(rendering) {
    widget()->setAccessibleName(QCoreApplication::translate("tarnix", "Text"));
    widget()->setFrameShape(QFrame::NoFrame);
    widget()->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
  }

  void show(const Element& element) override {
    const String& text = element.as<elements::TextView>()->text;
    if (!widget()->text().sharesBytesWith(text)) widget()->setText(text);
  }
};

}  // namespace

std::unique_ptr<Presenter> makeTextView(Rendering& rendering, const Element& element) {
  return make<TextViewPresenter>(rendering, element);
}

}  // namespace tarnix::qt
