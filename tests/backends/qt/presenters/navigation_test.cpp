#include <gtest/gtest.h>

#include <QApplication>
#include <QLineEdit>
#include <QScrollBar>
#include <QSplitter>
#include <QTest>

#include "backends/qt/rows/row_view.h"
#include "backends/qt/stage.h"
#include "contract/text_host.h"
#include "platform/appkit/application.h"

namespace tarnix::qt {
namespace {

View sidebarOf(std::optional<UUID>& selection, String& search) {
  const View::Rows rows{.count = 500,
                        .row = [](std::size_t i) { return verbatimText(std::to_string(i)).tag(UUID{}); },
                        .positionOfTag = [](const UUID&) { return std::optional<std::size_t>(300); }};
  return VStack({List(bindingTo(selection), {Section("Tarnix", rows)})
                     .searchable(bindingTo(search), modifiers::SearchFieldPlacement::sidebar)});
}

View navigation(View sidebar, View detail) {
  return NavigationView(std::move(sidebar), std::move(detail))
      .navigationTitle("")
      .toolbar({ToolbarItem(elements::ToolbarPlacement::navigation,
                            Button([] { NSApp().sendAction("toggleSidebar:"); }, Image("sidebar.leading")))});
}

TEST(NavigationView, theToolbarButtonHidesTheSidebarAndBringsItBackAsItWas) {
  Stage stage;
  std::optional<UUID> selection = UUID{};
  String search("word");
  const View view = navigation(sidebarOf(selection, search), Text("detail"));
  stage.show(view);
  const auto* rows = stage.window().findChild<RowView*>();
  const int scrolled = rows->verticalScrollBar()->value();
  EXPECT_GT(scrolled, 0);

  stage.press(QAccessible::Button, "Toggle Sidebar");
  EXPECT_FALSE(rows->isVisible());
  stage.show(view);
  EXPECT_FALSE(rows->isVisible()) << "an update leaves it hidden";
  EXPECT_TRUE(stage.has(QAccessible::StaticText, "detail"));

  stage.press(QAccessible::Button, "Toggle Sidebar");
  EXPECT_TRUE(rows->isVisible());
  EXPECT_EQ(rows->verticalScrollBar()->value(), scrolled);
  EXPECT_EQ(rows->currentIndex().row(), 300);
  EXPECT_EQ(stage.window().findChild<QLineEdit*>()->text(), "word");
}

TEST(NavigationView, isReadAndWalkedThroughFromTheSidebarOn) {
  Stage stage;
  std::optional<UUID> selection;
  String search;
  stage.show(navigation(sidebarOf(selection, search), test::TextHost{"detail"}));
  const auto* const split = stage.window().findChild<QSplitter*>();
  auto* const tree = QAccessible::queryAccessibleInterface(const_cast<QSplitter*>(split));
  EXPECT_EQ(tree->child(0)->object(), split->widget(0));
  auto* const field = stage.window().findChild<QLineEdit*>();
  field->setFocus();
  QTest::keyClick(field, Qt::Key_Tab);
  EXPECT_EQ(QApplication::focusWidget(), stage.window().findChild<RowView*>());
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
  EXPECT_EQ(QApplication::focusWidget(), stage.widget(QAccessible::Splitter, "Sidebar width"));
}

TEST(NavigationView, theKeyboardMovesTheLineBetweenTheColumns) {
  for (const auto direction : {Qt::LeftToRight, Qt::RightToLeft}) {
    Stage stage;
    stage.window().setLayoutDirection(direction);
    stage.show(navigation(Text("side"), Text("detail")));
    auto* const line = stage.widget(QAccessible::Splitter, "Sidebar width");
    auto* const value = stage.find(QAccessible::Splitter, "Sidebar width")->valueInterface();
    ASSERT_NE(value, nullptr);
    const auto width = [&] {
      const int sidebar = stage.window().findChild<QSplitter*>()->widget(0)->width();
      EXPECT_EQ(value->currentValue().toInt(), sidebar);
      return sidebar;
    };
    const int start = width();
    const bool isMirrored = direction == Qt::RightToLeft;
    line->setFocus(Qt::TabFocusReason);
    EXPECT_EQ(width(), start);
    QTest::keyClick(line, isMirrored ? Qt::Key_Left : Qt::Key_Right);
    EXPECT_GT(width(), start) << isMirrored;
    QTest::keyClick(line, isMirrored ? Qt::Key_Right : Qt::Key_Left);
    EXPECT_EQ(width(), start) << isMirrored;
    QTest::keyClick(line, Qt::Key_Home);
    EXPECT_EQ(width(), value->minimumValue().toInt());
    QTest::keyClick(line, Qt::Key_End);
    EXPECT_EQ(width(), value->maximumValue().toInt());
    value->setCurrentValue(start);
    EXPECT_EQ(width(), start);
  }
}

}  // namespace
}  // namespace tarnix::qt
