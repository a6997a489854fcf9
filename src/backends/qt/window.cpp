#include "backends/qt/window.h"

#include <QAbstractItemView>
#include <QAccessibleWidget>
#include <QEvent>
#include <QIcon>
#include <QTimer>
#include <QVBoxLayout>
#include <QWidget>
#include <QWindow>
#include <utility>

#include "backends/qt/tree/renderer.h"

namespace tarnix::qt {

class TopWidget : public QWidget {};

namespace {

constexpr QSize kDefaultSize(900, 600);
constexpr QSize kMinimumSize(520, 340);

// Assistive tools look for frames when they look for windows.
QAccessibleInterface* makeFrameAccessible(const QString&, QObject* object) {
  auto* const top = dynamic_cast<TopWidget*>(object);
  return top == nullptr ? nullptr : new QAccessibleWidget(top, QAccessible::Window);
}

void installFrameAccessibility() {
  [[maybe_unused]] static const bool isInstalled = [] {
    QAccessible::installFactory(makeFrameAccessible);
    return true;
  }();
}

}  // namespace

struct Window::Impl : TopWidget {
  explicit Impl(ViewGraph& shown)
      : graph(shown), renderer(*this, [this](QWidget* root) { placeRoot(root); }) {
    installFrameAccessibility();
    setWindowTitle(QStringLiteral("Tarnix"));
    setMinimumSize(kMinimumSize);
    resize(kDefaultSize);
    (new QVBoxLayout(this))->setContentsMargins({});
    graph.setRender([this](const std::shared_ptr<const Element>& tree) { renderer.render(tree); });
  }
  ~Impl() override { graph.setRender({}); }

  void placeRoot(QWidget* root) {
    if (root == nullptr) return;
    layout()->addWidget(root);
    root->show();
  }

  // Being on another desktop, covered by the platform's account, or minimised is as good as hidden.
  void tellVisibility() {
    const bool isExposed = windowHandle() != nullptr && windowHandle()->isExposed();
    graph.setVisible(isVisible() && isExposed && !isMinimized());
  }

  void showEvent(QShowEvent* event) override {
    QWidget::showEvent(event);
    windowHandle()->installEventFilter(this);
    // The rows can be walked through at once, and no cursor blinks while nobody types.
    auto* const rows = findChild<QAbstractItemView*>();
    if (focusWidget() == nullptr && rows != nullptr) rows->setFocus(Qt::ActiveWindowFocusReason);
  }

  void hideEvent(QHideEvent* event) override {
    QWidget::hideEvent(event);
    tellVisibility();
  }

  void changeEvent(QEvent* event) override {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::WindowStateChange) tellVisibility();
  }

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::Expose) {
      tellVisibility();
      if (!std::exchange(hasIcon, true)) QTimer::singleShot(0, this, &Impl::addIcon);
    }
    return QWidget::eventFilter(watched, event);
  }

  // Drawing it takes a while, so that it waits until the window has been painted.
  void addIcon() { setWindowIcon(QIcon(QStringLiteral(":/tarnix/tarnix.svg"))); }

  ViewGraph& graph;
  Renderer renderer;
  bool hasIcon = false;
};

Window::Window(ViewGraph& graph) : impl_(std::make_unique<Impl>(graph)) {}
Window::~Window() = default;

void Window::show() { impl_->show(); }

}  // namespace tarnix::qt
