#include <QTextEdit>

#include "backends/qt/text/rich/rich_text_editor.h"
#include "backends/qt/text/rich/rich_text_stage.h"
#include "platform/appkit/scroll_view.h"
#include "platform/swiftui/view_representable.h"

namespace tarnix::qt {
namespace {

// A view of the toolkit, shown by the presenter.
struct Note {
  std::shared_ptr<NSScrollView> scrollView;
  std::shared_ptr<NSScrollView> makeNSView(const NSViewRepresentableContext<Note>&) const {
    return scrollView;
  }
  void updateNSView(NSScrollView&, const NSViewRepresentableContext<Note>&) const {}
};

TEST(HostedTextView, isMirroredInAWidgetThatFitsWhatItShows) {
  Stage stage;
  const auto scrollView = NSTextView::scrollableTextView();
  NSTextView& text = *scrollView->documentView();
  text.setEditable(false);
  text.setString("plain");
  const View view = Note{scrollView};
  stage.show(view);
  auto* const shown = stage.window().findChild<QAbstractScrollArea*>();
  auto& reader = dynamic_cast<RichTextView&>(*shown);
  EXPECT_EQ(reader.text(), "plain");
  EXPECT_FALSE(reader.runAt(0));
  text.setFont({"", 40});
  text.setString("changed without an evaluation");
  scrollView->setBorderType(NSBorderType::lineBorder);
  QTest::qWait(1);
  EXPECT_EQ(reader.text(), "changed without an evaluation");
  EXPECT_GT(reader.caretRect(0).height(), 50);
  EXPECT_EQ(reader.frameShape(), QFrame::Box);
  text.textStorage()->setAttributedString(Writer().write("rich", linked("https://example.org")).take());
  text.setDrawsBackground(true);
  text.setBackgroundColor(Color(0.2, 0, 0).nsColor());
  QTest::qWait(1);
  EXPECT_TRUE(reader.linkAt(0));
  EXPECT_EQ(reader.viewport()->grab().toImage().pixelColor(250, 150), QColor(51, 0, 0));
  EXPECT_GE(drawnContrast(reader, 0, 4), 4.5);
}

TEST(HostedTextView, whatIsWrittenReachesTheModelAndAnEqualUpdateKeepsWhatCanBeUndone) {
  Stage stage;
  const auto scrollView = NSTextView::scrollableTextView();
  NSTextView& text = *scrollView->documentView();
  text.setAllowsUndo(true);
  text.setString("note");
  const View view = Note{scrollView};
  stage.show(view);
  auto& editor = *stage.window().findChild<QTextEdit*>();
  editor.setFocus();
  editor.moveCursor(QTextCursor::End);
  QTest::keyClicks(&editor, " one");
  QTest::keyClick(&editor, Qt::Key_Return);
  EXPECT_EQ(text.string(), "note one\n");
  stage.show(view);
  EXPECT_EQ(editor.textCursor().position(), 9);
  QTest::keyClick(&editor, Qt::Key_Z, Qt::ControlModifier);
  EXPECT_NE(text.string(), "note one\n");
  text.setEditable(false);
  stage.show(view);
  EXPECT_NE(dynamic_cast<RichTextView*>(stage.window().findChild<QAbstractScrollArea*>()), nullptr);
}

TEST(HostedTextView, aFormattedTextIsWrittenInWhereItMayBe) {
  struct Delegate : NSTextViewDelegate {
    void textDidChange(const NSNotification&) override { ++changes; }
    int changes = 0;
  };
  Stage stage;
  const auto scrollView = NSTextView::scrollableTextView();
  const auto delegate = std::make_shared<Delegate>();
  NSTextView& text = *scrollView->documentView();
  text.setDelegate(delegate);
  text.textStorage()->setAttributedString(Writer().write("link", linked("https://example.org")).take());
  const View view = Note{scrollView};
  stage.show(view);
  auto* const editor = stage.window().findChild<RichTextEditor*>();
  ASSERT_NE(editor, nullptr);
  editor->moveCursor(QTextCursor::End);
  QTest::keyClicks(editor, "ed");
  EXPECT_EQ(text.attributedString(), Writer().write("linked", linked("https://example.org")).take());
  EXPECT_EQ(delegate->changes, 2);
  text.setEditable(false);
  stage.show(view);
  EXPECT_EQ(stage.window().findChild<RichTextEditor*>(), nullptr);
}

}  // namespace
}  // namespace tarnix::qt
