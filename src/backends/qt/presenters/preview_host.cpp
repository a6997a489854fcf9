#include "backends/qt/presenters/preview_host.h"

#include <QTimer>
#include <optional>
#include <utility>

#include "backends/qt/previews/preview_widget.h"
#include "backends/qt/theme/text.h"
#include "platform/quicklook/preview_view.h"
#include "platform/swiftui/elements.h"

// The preview view of the toolkit, mirrored in a widget.
namespace tarnix::qt {
namespace {

std::shared_ptr<QLPreviewView> previewViewOf(const Element& element) {
  return std::dynamic_pointer_cast<QLPreviewView>(element.as<elements::HostedView>()->view);
}

class PreviewHostPresenter : public WidgetPresenter<PreviewWidget> {
 public:
  explicit PreviewHostPresenter(Rendering& rendering) : WidgetPresenter(rendering) {
    mirror_.setSingleShot(true);
    QObject::connect(&mirror_, &QTimer::timeout, widget(), [this] { mirror(); });
  }

  bool canShow(const Element& element) const override { return previewViewOf(element) != nullptr; }
  void show(const Element& element) override {
    if (auto view = previewViewOf(element); view != view_) {
      view_ = std::move(view);
      changes_ = view_->changes().sink([this](const Void&) { mirror_.start(0); });
    }
    mirror();
  }

 private:
  // An item is set at each evaluation; only another URL is another preview.
  void mirror() {
    mirror_.stop();
    const auto& item = view_->previewItem();
    auto url = item ? item->previewItemURL() : std::nullopt;
    if (std::exchange(shown_, url) == url) return;
    if (!url || !url->isFileURL()) return widget()->clear();
    widget()->setSource(previewOfPath(url->path().str()), singleLine(titleStart(url->lastPathComponent())));
  }

  std::shared_ptr<QLPreviewView> view_;
  std::optional<URL> shown_;
  QTimer mirror_;
  AnyCancellable changes_;
};

}  // namespace

std::unique_ptr<Presenter> previewPresenterFor(Rendering& rendering, const Element& element) {
  if (!previewViewOf(element)) return nullptr;
  return std::make_unique<PreviewHostPresenter>(rendering);
}

}  // namespace tarnix::qt
