#include <QCoreApplication>

#include "backends/qt/text/plain_text_view.h"
#include "backends/qt/tree/presenter.h"

namespace tarnix::qt {
namespace {

class TextViewPresenter : public WidgetPresenter<PlainTextView> {
 public:
  explicit TextViewPresenter(Rendering& rendering) : WidgetPresenter(rendering) {
    widget()->setFrameShape(QFrame::NoFrame);
    widget()->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
  }

  QString ownName() const override { return QCoreApplication::translate("tarnix", "Text"); }

  void show(const Element& element) override {
    const String& text = element.as<elements::TextView>()->text;
    if (!widget()->text().sharesBytesWith(text)) widget()->setText(text);
  }
};

}  // namespace

template <>
std::unique_ptr<Presenter> presenterFor<elements::TextView>(Rendering& rendering, const Element&) {
  return std::make_unique<TextViewPresenter>(rendering);
}

}  // namespace tarnix::qt
