#include <gtest/gtest.h>

#include <QApplication>
#include <QKeyEvent>
#include <QMessageBox>
#include <QPushButton>

#include "backends/qt/stage.h"

namespace tarnix::qt {
namespace {

void type(QWidget* widget, int key, const QString& text = {}) {
  for (const auto kind : {QEvent::KeyPress, QEvent::KeyRelease}) {
    QKeyEvent event(kind, key, Qt::NoModifier, text);
    QApplication::sendEvent(widget, &event);
  }
}

TEST(Button, thatShowsItsSymbolOnlyIsNamedByItsTitle) {
  Stage stage;
  int presses = 0;
  const auto clear = [&](int step) {
    return HStack({Button([&presses, step] { presses += step; }, Label("Clear list", "trash"))
                       .buttonStyle(modifiers::ButtonStyle::borderless)
                       .labelStyle(modifiers::LabelStyle::iconOnly)
                       .help("Clear list of saved clips")});
  };
  stage.show(clear(1));
  EXPECT_EQ(stage.widget(QAccessible::Button, "Clear list")->toolTip(), "Clear list of saved clips");
  stage.press(QAccessible::Button, "Clear list");
  stage.show(clear(10));
  type(stage.widget(QAccessible::Button, "Clear list"), Qt::Key_Space, " ");
  EXPECT_EQ(presses, 11);
}

TEST(Button, withASymbolAloneIsNamedByItsMeaning) {
  Stage stage;
  stage.show(HStack(
      {Button([] {}, Image("sidebar.leading")), Button([] {}, Image("trash")).accessibilityLabel("Away")}));
  EXPECT_TRUE(stage.has(QAccessible::Button, "Toggle Sidebar"));
  EXPECT_TRUE(stage.has(QAccessible::Button, "Away"));
}

// A button that opens a dialog, which is shown anew after each change as a view graph would do.
class DialogStage : public Stage {
 public:
  void showAgain() {
    show(HStack({Button([this] { isPresented = true; }, Text("Ask"))
                     .confirmationDialog(
                         "Are you sure?", bindingTo(isPresented),
                         {Button([this] { ++deletions; }, Text("Delete all clips"),
                                 elements::ButtonRole::destructive),
                          Button([this] { ++cancellations; }, Text("Cancel"), elements::ButtonRole::cancel)},
                         "This cannot be reverted!")}));
  }
  QMessageBox* ask() {
    showAgain();
    press(QAccessible::Button, "Ask");
    showAgain();
    return window().findChild<QMessageBox*>();
  }
  void choose(const QString& title) {
    auto* const box = window().findChild<QMessageBox*>();
    ASSERT_NE(box, nullptr);
    for (QAbstractButton* const button : box->buttons()) {
      if (button->text() == title) return choose(*button);
    }
    FAIL() << title.toStdString();
  }
  void choose(QAbstractButton& button) {
    button.click();
    settle();
    showAgain();
  }

  bool isPresented = false;
  int deletions = 0;
  int cancellations = 0;
};

TEST(ConfirmationDialog, takesEscapeReturnAndClosingForCancelling) {
  DialogStage stage;
  type(stage.ask(), Qt::Key_Escape);
  EXPECT_FALSE(stage.isPresented);
  type(stage.ask(), Qt::Key_Return);
  EXPECT_FALSE(stage.isPresented);
  stage.ask()->close();
  EXPECT_FALSE(stage.isPresented);
  EXPECT_EQ(stage.cancellations, 3);
  EXPECT_EQ(stage.deletions, 0);
}

// Counts what is drawn below a window.
class Drawings : public QObject {
 public:
  explicit Drawings(QWidget& window) {
    for (QWidget* const each : window.findChildren<QWidget*>()) each->installEventFilter(this);
  }
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() == QEvent::Paint) ++count;
    return false;
  }
  int count = 0;
};

TEST(Stacks, whatLooksAsBeforeIsNotDrawnAnew) {
  Stage stage;
  bool isOn = true;
  const auto view = [&](const char* age) {
    return VStack({HStack({Button([] {}, Label("Information", "info.bubble"))
                               .labelStyle(modifiers::LabelStyle::iconOnly)
                               .buttonStyle(modifiers::ButtonStyle::borderless)
                               .foregroundStyle(modifiers::ForegroundStyle::accent),
                           Image("clock").foregroundStyle(modifiers::ForegroundStyle::secondary),
                           Toggle("Active", bindingTo(isOn)), Divider().frame({.height = 40})}),
                   verbatimLabel(age, "clock").padding(), Text("Text").font({.isBold = true})});
  };
  stage.show(view("1 min ago"));
  Stage::settle();
  Drawings drawings(stage.window());
  stage.show(view("1 min ago"));
  Stage::settle();
  EXPECT_EQ(drawings.count, 0);
  stage.show(view("2 min ago"));
  Stage::settle();
  EXPECT_GT(drawings.count, 0) << "what has changed is drawn";
}

}  // namespace
}  // namespace tarnix::qt
