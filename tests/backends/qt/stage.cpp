#include "backends/qt/stage.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QVBoxLayout>

namespace tarnix::qt {
namespace {

QAccessibleInterface* findBelow(QAccessibleInterface* object, QAccessible::Role role, const QString& name) {
  if (object->role() == role && nameOf(object) == name) return object;
  for (int i = 0; i < object->childCount(); ++i) {
    QAccessibleInterface* const child = object->child(i);
    if (child == nullptr || child->state().invisible) continue;
    if (auto* const found = findBelow(child, role, name)) return found;
  }
  return nullptr;
}

}  // namespace

Platform testPlatform() {
  Platform platform;
  platform.mainRunLoop = std::make_shared<RunLoop>([] { return RunLoop::Instant(0); });
  platform.pasteboards.fill(std::make_shared<simulated::Pasteboard>([] {}));
  return platform;
}

simulated::Pasteboard& pasteboard() {
  return static_cast<simulated::Pasteboard&>(*NSPasteboard::generalPasteboard());
}

Stage::Stage() : scope_(testPlatform()) {
  (new QVBoxLayout(&window_))->setContentsMargins({});
  renderer_ = std::make_unique<Renderer>(window_, [this](QWidget* root) {
    window_.layout()->addWidget(root);
    root->show();
  });
  window_.resize(800, 600);
  window_.show();
  window_.activateWindow();
  settle();
}

Stage::~Stage() { renderer_.reset(); }

void Stage::show(const View& view) {
  renderer_->render(ViewGraph(view, loop()).tree());
  settle();
}

void Stage::settle() {
  QApplication::processEvents();
  QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

bool Stage::has(QAccessible::Role role, const QString& name) const {
  return findBelow(QAccessible::queryAccessibleInterface(const_cast<QWidget*>(&window_)), role, name) !=
         nullptr;
}

QAccessibleInterface* Stage::find(QAccessible::Role role, const QString& name) const {
  auto* const root = QAccessible::queryAccessibleInterface(const_cast<QWidget*>(&window_));
  auto* const found = findBelow(root, role, name);
  EXPECT_NE(found, nullptr) << name.toStdString();
  return found == nullptr ? root : found;
}

void Stage::press(QAccessible::Role role, const QString& name) const {
  QAccessibleInterface* const object = find(role, name);
  if (auto* const button = qobject_cast<QAbstractButton*>(object->object())) {
    button->click();
  } else if (auto* const actions = object->actionInterface()) {
    actions->doAction(QAccessibleActionInterface::pressAction());
  } else {
    ADD_FAILURE() << "cannot be pressed: " << name.toStdString();
  }
  settle();
}

QWidget* Stage::widget(QAccessible::Role role, const QString& name) const {
  return qobject_cast<QWidget*>(find(role, name)->object());
}

QString nameOf(QAccessibleInterface* object) { return object->text(QAccessible::Name); }

}  // namespace tarnix::qt
