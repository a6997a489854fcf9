#include <gmock/gmock.h>

#include <QClipboard>
#include <QContextMenuEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QtTest>

#include "backends/qt/stage.h"
#include "backends/qt/text/plain/plain_text_view.h"
#include "backends/qt/widgets/search_field.h"
#include "backends/qt/widgets/text_editor.h"

namespace {
int usesOfTheToolkitsClipboard = 0;
}

// Stands in for the toolkit's own, which waits for owners: whatever in this program asks for it is counted.
QClipboard* QGuiApplication::clipboard() {
  ++usesOfTheToolkitsClipboard;
  struct Silent : QClipboard {
    Silent() : QClipboard(nullptr) {}
  };
  static auto* const kClipboard = new Silent;
  return kClipboard;
}

namespace tarnix::qt {
namespace {

class CopyAndPaste : public ::testing::Test {
 protected:
  CopyAndPaste() {
    usesOfTheToolkitsClipboard = 0;
    field.show();
    field.setFocus();
  }
  // No way of editing uses the toolkit's clipboard.
  ~CopyAndPaste() override { EXPECT_EQ(usesOfTheToolkitsClipboard, 0); }

  void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(&field, key, modifiers);
  }
  std::vector<QAction*> menuOf(QWidget& widget) {
    QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(5, 5), widget.mapToGlobal(QPoint(5, 5)));
    QApplication::sendEvent(&widget, &event);
    std::vector<QAction*> actions;
    for (QAction* const each : QApplication::activePopupWidget()->actions()) {
      if (!each->isSeparator()) actions.push_back(each);
    }
    return actions;
  }
  std::optional<String> copied() { return pasteboard().stringForType(NSPasteboardTypeString); }
  static simulated::ItemContent textItem(const String& text) {
    return {{NSPasteboardTypeString.rawValue, text}};
  }

  PlatformScope platform{testPlatform()};
  SearchField field;
};

TEST_F(CopyAndPaste, goThroughThePasteboardByEveryKey) {
  field.setText("one two");
  field.selectAll();
  key(Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(copied(), String("one two"));
  field.setSelection(0, 4);
  key(Qt::Key_X, Qt::ControlModifier);
  EXPECT_EQ(copied(), String("one "));
  EXPECT_EQ(field.text(), "two");
  field.end(false);
  key(Qt::Key_V, Qt::ControlModifier);
  key(Qt::Key_Insert, Qt::ShiftModifier);
  key(Qt::Key_Insert, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(field.text(), "twoone one ");
  // What moves, selects, deletes and takes back leaves the toolkit's clipboard alone as well.
  key(Qt::Key_Home);
  key(Qt::Key_Right, Qt::ShiftModifier);
  EXPECT_EQ(field.selectedText(), "t");
  key(Qt::Key_Right);
  key(Qt::Key_Right, Qt::ControlModifier);
  key(Qt::Key_End, Qt::ShiftModifier);
  EXPECT_EQ(field.selectedText(), "one ");
  key(Qt::Key_Delete);
  key(Qt::Key_Backspace);
  EXPECT_EQ(field.text(), "twoone");
  key(Qt::Key_Z, Qt::ControlModifier);
  key(Qt::Key_A, Qt::ControlModifier);
  key(Qt::Key_Left, Qt::ControlModifier | Qt::ShiftModifier);
  QTest::keyClicks(&field, "new");
  EXPECT_THAT(field.text().toStdString(), ::testing::HasSubstr("new"));
}

TEST_F(CopyAndPaste, goThroughThePasteboardByMouseAndMenu) {
  field.setText("word");
  QTest::mouseDClick(&field, Qt::LeftButton, {}, QPoint(40, 15));
  QTest::mouseClick(&field, Qt::MiddleButton, {}, QPoint(40, 15));
  EXPECT_FALSE(field.acceptDrops() || field.dragEnabled());
  field.selectAll();
  std::vector<std::string> titles;
  for (QAction* const each : menuOf(field)) {
    titles.push_back(each->text().remove('&').toStdString());
    if (titles.back() == "Cut" || titles.back() == "Paste") each->trigger();
  }
  EXPECT_THAT(titles, ::testing::ElementsAre("Undo", "Redo", "Cut", "Copy", "Paste", "Delete", "Select All"));
  EXPECT_EQ(field.text(), "word");
  EXPECT_EQ(copied(), String("word"));

  PlainTextView view;
  view.setText("some text");
  static_cast<QWidget&>(view).show();
  view.selectAll();
  menuOf(*view.viewport())[0]->trigger();
  EXPECT_EQ(copied(), String("some text"));
}

TEST_F(CopyAndPaste, goThroughThePasteboardInTheEditor) {
  TextEditor editor;
  editor.setText("one two\nthree");
  editor.show();
  editor.setFocus();
  const auto press = [&](Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(&editor, key, modifiers);
  };
  press(Qt::Key_Right, Qt::ControlModifier | Qt::ShiftModifier);
  press(Qt::Key_X, Qt::ControlModifier);
  EXPECT_EQ(copied(), String("one "));
  press(Qt::Key_A, Qt::ControlModifier);
  press(Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(copied(), String("two\nthree"));
  press(Qt::Key_End, Qt::ControlModifier);
  press(Qt::Key_V, Qt::ControlModifier);
  press(Qt::Key_Backspace);
  EXPECT_EQ(editor.toPlainText(), "two\nthreetwo\nthre");
  press(Qt::Key_Home, Qt::ShiftModifier);
  press(Qt::Key_Delete);
  QTest::keyClicks(&editor, "x");
  EXPECT_EQ(editor.toPlainText(), "two\nthreetwo\nx");
  QTest::mouseDClick(editor.viewport(), Qt::LeftButton, {}, QPoint(20, 20));
  QTest::mouseClick(editor.viewport(), Qt::MiddleButton, {}, QPoint(40, 15));
  EXPECT_EQ(editor.textCursor().selectedText(), "two");
  for (QAction* const each : menuOf(*editor.viewport())) {
    const QString title = each->text().remove('&');
    if (title == "Cut" || title == "Paste" || title == "Select All") each->trigger();
  }
  EXPECT_EQ(editor.toPlainText(), "two\nthreetwo\nx");
  EXPECT_FALSE(editor.acceptDrops());
  pasteboard().setUnreadable(true);
  editor.moveCursor(QTextCursor::End);
  press(Qt::Key_Insert, Qt::ShiftModifier);
  QTest::keyClicks(&editor, "y");
  pasteboard().write({textItem("[late]")});
  pasteboard().settle();
  EXPECT_THAT(editor.toPlainText().toStdString(), ::testing::HasSubstr("[late]"));
}

TEST_F(CopyAndPaste, whatIsStillToComeArrivesWhereTheCursorWas) {
  struct Case {
    const char* doing;
    std::function<void()> meanwhile;
    QString expected;
  };
  const Case cases[] = {
      {"nothing", [] {}, "ab[late]cd"},
      {"typing there", [&] { QTest::keyClicks(&field, "x"); }, "ab[late]xcd"},
      {"typing in front", [&] { field.setCursorPosition(0), QTest::keyClicks(&field, "x"); }, "xab[late]cd"},
      {"deleting around", [&] { field.setSelection(1, 2), field.del(); }, "a[late]d"},
      {"pasting again", [&] { field.end(false), key(Qt::Key_V, Qt::ControlModifier); }, "abcd[late]"},
      {"clearing", [&] { key(Qt::Key_Escape); }, ""},
  };
  for (const Case& each : cases) {
    field.setText("abcd");
    field.setCursorPosition(2);
    pasteboard().setUnreadable(true);
    key(Qt::Key_V, Qt::ControlModifier);
    each.meanwhile();
    pasteboard().write({textItem("[late]")});
    pasteboard().settle();
    EXPECT_EQ(field.text(), each.expected) << each.doing;
  }
}

TEST_F(CopyAndPaste, takesNoMoreThanTheFieldHolds) {
  pasteboard().write({textItem(String(std::string(10'000'000, 'x') + "\xF0\x9F"))});
  key(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(field.text().size(), field.maxLength());
}

// The count would be of no worth if the toolkit's own fields went by unseen.
TEST(ToolkitsClipboard, isCountedWhenSomethingUsesIt) {
  QLineEdit field("text");
  field.selectAll();
  usesOfTheToolkitsClipboard = 0;
  QTest::keyClick(&field, Qt::Key_C, Qt::ControlModifier);
  EXPECT_GT(usesOfTheToolkitsClipboard, 0);
}

}  // namespace
}  // namespace tarnix::qt
