#include <QHelpEvent>
#include <QToolTip>

#include "backends/qt/text/rich/rich_text_stage.h"

namespace tarnix::qt {
namespace {

using ::testing::ElementsAre;

using RichTextLinksTest = RichTextViewTest;

TEST_F(RichTextLinksTest, areOpenedByClickAndKeyAndToldBefore) {
  view.setAttributedText(Writer()
                             .write("see ")
                             .write("this", linked("https://example.org/a"))
                             .write(" or ")
                             .write("that", linked("file:///etc/passwd"))
                             .write(" or ")
                             .write("mail", linked("mailto:a@example.org"))
                             .end()
                             .take());
  for (const char* each : {"see", "that", "mail", "this"}) click(find(each) + 1);
  EXPECT_THAT(opened, ElementsAre("mailto:a@example.org", "https://example.org/a"));
  QTest::mousePress(view.viewport(), Qt::LeftButton, {}, before(find("this")));
  QTest::mouseMove(view.viewport(), before(find("this") + 3));
  QMouseEvent drag(QEvent::MouseMove, before(find("this") + 3), view.mapToGlobal(before(find("this") + 3)),
                   Qt::NoButton, Qt::LeftButton, {});
  QApplication::sendEvent(view.viewport(), &drag);
  QTest::mouseRelease(view.viewport(), Qt::LeftButton, {}, before(find("this") + 3));
  EXPECT_EQ(opened.size(), 2U) << "a drag selects";

  QHelpEvent hover(QEvent::ToolTip, before(find("mail") + 1), view.mapToGlobal(before(find("mail") + 1)));
  QApplication::sendEvent(view.viewport(), &hover);
  EXPECT_EQ(QToolTip::text(), "mailto:a@example.org");
  view.select(0, 0);
  opened.clear();
  for (int i = 0; i < 2; ++i) key(Qt::Key_Tab), key(Qt::Key_Return);
  key(Qt::Key_Backtab);
  EXPECT_EQ(view.selectedText(), "this");
  EXPECT_EQ(view.accessibleDescription(), "https://example.org/a");
  key(Qt::Key_Enter);
  EXPECT_THAT(opened, ElementsAre("https://example.org/a", "mailto:a@example.org", "https://example.org/a"));
}

TEST_F(RichTextLinksTest, areFoundNamedAndPressedByAssistiveTools) {
  view.setAttributedText(Writer()
                             .write("see ")
                             .write("this ", linked("https://example.org/a"))
                             .write("page", linked("https://example.org/a"))
                             .write(" or ")
                             .write("that", linked("file:///etc/passwd"))
                             .write("mail", linked("mailto:a@example.org"))
                             .take());
  QAccessibleInterface& text = *QAccessible::queryAccessibleInterface(&view);
  ASSERT_EQ(text.childCount(), 2);
  QAccessibleInterface& page = *text.child(0);
  EXPECT_EQ(page.role(), QAccessible::Link);
  EXPECT_EQ(page.text(QAccessible::Name), "this page");
  EXPECT_EQ(page.text(QAccessible::Description), "https://example.org/a");
  EXPECT_TRUE(page.rect().contains(view.viewport()->mapToGlobal(before(find("page")))));
  EXPECT_EQ(text.childAt(page.rect().center().x(), page.rect().center().y()), &page);
  page.actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  EXPECT_THAT(opened, ElementsAre("https://example.org/a"));
  EXPECT_FALSE(page.state().focused);
  key(Qt::Key_Tab);
  EXPECT_TRUE(page.state().focused);
  QAccessibleInterface& mail = *text.child(1);
  mail.actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
  EXPECT_EQ(view.selectedText(), "mail");
  EXPECT_EQ(text.indexOfChild(&mail), 1);

  view.setText("no link");
  EXPECT_EQ(text.childCount(), 0);
  EXPECT_FALSE(mail.isValid());
  mail.actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  EXPECT_EQ(opened.size(), 1U);
}

TEST_F(RichTextLinksTest, areOpenedWhereNothingCanBeSelected) {
  view.setSelectable(false);
  view.setAttributedText(Writer().write("see ").write("this", linked("https://example.org/a")).take());
  EXPECT_EQ(view.viewport()->cursor().shape(), Qt::ArrowCursor);
  click(find("this") + 1);
  EXPECT_EQ(opened.size(), 1U);
  QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, before(1));
  key(Qt::Key_A, Qt::ControlModifier);
  key(Qt::Key_Right, Qt::ShiftModifier);
  EXPECT_TRUE(view.selection().isEmpty());
  key(Qt::Key_Tab);
  key(Qt::Key_Return);
  EXPECT_EQ(opened.size(), 2U);
  key(Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(pasteboard().stringForType(NSPasteboardTypeString), std::nullopt);
}

}  // namespace
}  // namespace tarnix::qt
