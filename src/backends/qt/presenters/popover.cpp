#include <QEvent>
#include <QFrame>
#include <QPainter>
#include <QPainterPath>
#include <QPointer>
#include <QScreen>
#include <QVBoxLayout>

#include "backends/qt/tree/slot.h"

namespace tarnix::qt {
namespace {

constexpr int kDistance = 4;  // From what it hangs on.
constexpr int kRadius = 8;
constexpr QSize kRoom(280, 260);

// A small window that goes when the user turns to anything else.
class PopoverFrame : public QFrame {
 public:
  explicit PopoverFrame(QWidget* window) : QFrame(window, Qt::Popup | Qt::FramelessWindowHint) {
    setAttribute(Qt::WA_NoMouseReplay);  // What is pressed to be rid of it is not pressed.
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(6, 6, 6, 6);
    setFixedSize(kRoom);
    // Not every desktop can show what lies behind its corners.
    QPainterPath outline;
    outline.addRoundedRect(rect(), kRadius, kRadius);
    setMask(QRegion(outline.toFillPolygon().toPolygon()));
  }

  void setWentAway(std::function<void()> wentAway) { wentAway_ = std::move(wentAway); }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(palette().color(QPalette::Mid));
    painter.setBrush(palette().color(QPalette::Base));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), kRadius, kRadius);
  }
  void hideEvent(QHideEvent* event) override {
    QFrame::hideEvent(event);
    if (wentAway_) wentAway_();
  }

 private:
  std::function<void()> wentAway_;
};

class PopoverPresenter : public Presenter {
 public:
  explicit PopoverPresenter(Rendering& rendering) : Presenter(rendering), content_(rendering) {}
  ~PopoverPresenter() override { close(); }
  QWidget* widget() const override { return nullptr; }
  void anchorTo(QWidget* anchor) override { anchor_ = anchor; }

  void show(const Element& element) override {
    isPresented_ = element.as<elements::Popover>()->isPresented;
    const bool isWanted = isPresented_.get() && !element.children.empty() && anchor_;
    if (!isWanted) return close();
    if (!frame_) frame_ = std::make_unique<PopoverFrame>(rendering().window);
    if (content_.show(element.children.front())) frame_->layout()->addWidget(content_.widget());
    if (frame_->isVisible()) return;
    place();
    frame_->setWentAway([this] { wentAway(); });
    frame_->show();
  }

 private:
  void wentAway() {
    if (call(isPresented_.get)) call(isPresented_.set, false);
  }

  void close() {
    if (!frame_) return;
    frame_->setWentAway({});
    frame_->hide();
  }

  // Above what it hangs on, or below where there is more room, and on the screen.
  void place() {
    const QRect anchor(anchor_->mapToGlobal(QPoint()), anchor_->size());
    const QRect screen = anchor_->screen()->availableGeometry();
    QRect frame({}, frame_->size());
    frame.moveBottomLeft(anchor.topLeft() - QPoint(0, kDistance));
    if (frame.top() < screen.top()) frame.moveTopLeft(anchor.bottomLeft() + QPoint(0, kDistance));
    frame.moveLeft(
        std::clamp(frame.left(), screen.left(), std::max(screen.left(), screen.right() - frame.width())));
    frame_->move(frame.topLeft());
  }

  QPointer<QWidget> anchor_;
  Binding<bool> isPresented_;
  std::unique_ptr<PopoverFrame> frame_;
  Slot content_;
};

}  // namespace

template <>
std::unique_ptr<Presenter> presenterFor<elements::Popover>(Rendering& rendering, const Element&) {
  return std::make_unique<PopoverPresenter>(rendering);
}

}  // namespace tarnix::qt
