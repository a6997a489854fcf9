#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>

#include "backends/qt/rows/row_view.h"
#include "backends/qt/stage.h"

namespace tarnix::qt {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Lt;

// A list of clips, newest first, and how many of its rows were made.
class ListStage : public Stage {
 public:
  explicit ListStage(std::size_t count) {
    for (std::size_t i = count; i > 0; --i) {
      titles.push_back("clip " + std::to_string(i - 1));
      tags.push_back(UUID::random());
    }
    showAgain();
  }

  void add(std::string title) {
    titles.insert(titles.begin(), std::move(title));
    tags.insert(tags.begin(), UUID::random());
  }
  void showAgain() {
    show(VStack({List(bindingTo(selection), {Section("Tarnix", rows())})
                     .listStyle(modifiers::ListStyle::sidebar)
                     .searchable(bindingTo(search), modifiers::SearchFieldPlacement::sidebar)}));
  }
  View::Rows rows() {
    return {.count = titles.size(),
            .row =
                [this](std::size_t position) {
                  ++rowsMade;
                  return NavigationLink({Image("doc"), verbatimText(titles[position])})
                      .badge(position + 1)
                      .tag(tags[position]);
                },
            .positionOfTag = [this](const UUID& tag) -> std::optional<std::size_t> {
              const auto found = std::ranges::find(tags, tag);
              if (found == tags.end()) return std::nullopt;
              return static_cast<std::size_t>(found - tags.begin());
            }};
  }

  RowView& view() { return *window().findChild<RowView*>(); }
  QAccessibleInterface* list() { return find(QAccessible::List, "Tarnix"); }
  int selectedRow() {
    const auto selected = view().selectionModel()->selectedRows();
    return selected.size() == 1 ? selected.front().row() : -1;
  }
  void click(int row) {
    const QPoint point = view().visualRect(view().model()->index(row, 0)).center();
    QTest::mouseClick(view().viewport(), Qt::LeftButton, {}, point);
  }
  std::optional<UUID> tagOf(std::size_t position) const { return tags[position]; }

  std::vector<std::string> titles;
  std::vector<UUID> tags;
  std::optional<UUID> selection;
  String search;
  std::size_t rowsMade = 0;
};

TEST(List, makesOnlyTheRowsThatAreSeen) {
  ListStage small(100);
  ListStage large(100'000);
  for (ListStage* stage : {&small, &large}) {
    stage->rowsMade = 0;
    stage->showAgain();
    stage->view().viewport()->repaint();
  }
  EXPECT_GT(small.rowsMade, 10U);
  EXPECT_EQ(large.rowsMade, small.rowsMade);
  EXPECT_LT(large.rowsMade, 80U);
}

TEST(List, isLeftAloneWhereItsRowsLookAsBefore) {
  ListStage stage(100);
  stage.view().viewport()->repaint();
  QSignalSpy changes(stage.view().model(), &QAbstractItemModel::dataChanged);
  stage.showAgain();
  EXPECT_EQ(changes.count(), 0);
  const std::string kept = std::exchange(stage.titles[1], "changed");
  stage.showAgain();
  EXPECT_EQ(changes.count(), 1);
  EXPECT_EQ(stage.view().model()->index(1, 0).data(Qt::AccessibleTextRole), "changed");
  stage.titles[1] = kept;
  stage.tags[0] = UUID::random();
  stage.showAgain();
  EXPECT_EQ(changes.count(), 2) << "another clip, though it looks the same";
  stage.add("new");
  stage.showAgain();
  EXPECT_EQ(changes.count(), 3);
}

TEST(List, scrollsToEitherEndOfManyRows) {
  ListStage stage(100'000);
  stage.rowsMade = 0;
  QScrollBar& bar = *stage.view().verticalScrollBar();
  bar.setValue(bar.maximum());
  EXPECT_EQ(stage.view().visibleRows().back(), 99'999);
  bar.setValue(bar.maximum() / 2);
  EXPECT_NEAR(stage.view().visibleRows().front(), 50'000, 20);
  bar.setValue(0);
  EXPECT_EQ(stage.view().visibleRows().front(), 0);
  EXPECT_LT(stage.rowsMade, 200U);
}

TEST(List, rowsAreKnownByTheirPosition) {
  ListStage stage(3);
  QAccessibleInterface* const top = stage.list()->child(0);
  EXPECT_EQ(nameOf(top), "clip 2");
  EXPECT_EQ(top->text(QAccessible::Description), "1");
  stage.add("new");
  stage.showAgain();
  ASSERT_EQ(stage.list()->childCount(), 4);
  EXPECT_EQ(stage.list()->child(0), top);
  EXPECT_EQ(nameOf(top), "new");
  EXPECT_EQ(nameOf(stage.list()->child(3)), "clip 0");
  EXPECT_EQ(stage.list()->child(3)->text(QAccessible::Description), "4");
}

TEST(List, emptiedWhileScrolledStartsAtItsTopAgain) {
  ListStage stage(1000);
  stage.selection = stage.tagOf(900);
  stage.showAgain();
  stage.titles.clear();
  stage.tags.clear();
  stage.showAgain();
  EXPECT_EQ(stage.list()->childCount(), 0);
  EXPECT_EQ(stage.view().verticalScrollBar()->maximum(), 0);
  stage.add("new");
  stage.showAgain();
  EXPECT_THAT(stage.view().visibleRows(), ElementsAre(0));
  EXPECT_GT(stage.view().visualRect(stage.view().model()->index(0, 0)).top(), 0) << "below the header";
}

TEST(List, aPageKeyMovesByWhatIsSeen) {
  ListStage stage(1000);
  stage.click(0);
  const int seen = static_cast<int>(stage.view().visibleRows().size());
  QTest::keyClick(&stage.view(), Qt::Key_PageDown);
  EXPECT_NEAR(stage.selectedRow(), seen, 3);
  EXPECT_THAT(stage.view().visibleRows(), Contains(stage.selectedRow()));
  QTest::keyClick(&stage.view(), Qt::Key_PageUp);
  EXPECT_EQ(stage.selectedRow(), 0);
}

TEST(List, followsTheSelectionThatOthersWrite) {
  ListStage stage(1000);
  stage.selection = stage.tagOf(700);
  stage.showAgain();
  EXPECT_EQ(stage.selectedRow(), 700);
  EXPECT_THAT(stage.view().visibleRows(), Contains(700));
  EXPECT_TRUE(stage.list()->child(700)->state().selected);
  stage.add("new");
  stage.showAgain();
  EXPECT_EQ(stage.selectedRow(), 701) << "the selected clip has moved down";
  stage.selection = stage.tagOf(0);
  stage.showAgain();
  EXPECT_EQ(stage.selectedRow(), 0);
  EXPECT_THAT(stage.view().visibleRows(), Contains(0));
  stage.selection = UUID::random();
  stage.showAgain();
  EXPECT_EQ(stage.selectedRow(), -1);
  EXPECT_NE(stage.selection, std::nullopt) << "what is shown is never written back";
}

TEST(List, revealsTheSelectionOnceTheViewHasItsSize) {
  ListStage stage(1000);
  stage.window().hide();
  stage.selection = stage.tagOf(500);
  stage.showAgain();
  stage.window().resize(600, 200);
  stage.window().show();
  Stage::settle();
  EXPECT_THAT(stage.view().visibleRows(), Contains(500));
}

TEST(List, shrinkingPicksNoOtherRow) {
  ListStage stage(10);
  stage.click(9);
  const auto picked = stage.selection;
  stage.titles.resize(4);
  stage.tags.resize(4);
  stage.showAgain();
  EXPECT_EQ(stage.selection, picked);
  EXPECT_EQ(stage.selectedRow(), -1);
}

TEST(List, gettingTheFocusPicksNothing) {
  ListStage stage(3);
  stage.view().setFocus(Qt::TabFocusReason);
  EXPECT_EQ(stage.selection, std::nullopt);
  QTest::keyClick(&stage.view(), Qt::Key_Down);
  EXPECT_EQ(stage.selection, stage.tagOf(0));
}

TEST(List, emptyStillHasItsNameAndSearchField) {
  ListStage stage(0);
  EXPECT_EQ(stage.list()->childCount(), 0);
  EXPECT_TRUE(stage.has(QAccessible::EditableText, "Search"));
}

TEST(List, looksOnlyAtTheStartOfATitle) {
  ListStage stage(0);
  stage.add(std::string(1'000'000, 'x'));
  stage.add("first\nsecond\x01third");
  stage.showAgain();
  EXPECT_LT(nameOf(stage.list()->child(1)).size(), 400);
  EXPECT_EQ(nameOf(stage.list()->child(0)), "first\nsecond third");
}

TEST(List, saysWhatCannotBeSeen) {
  ListStage stage(0);
  EXPECT_EQ(stage.list()->text(QAccessible::Description), "") << "nothing was searched for";
  stage.search = String("absent");
  stage.showAgain();
  EXPECT_EQ(stage.list()->text(QAccessible::Description), "No results");
  stage.add(" \n\t");
  stage.add("");
  stage.showAgain();
  EXPECT_EQ(stage.list()->text(QAccessible::Description), "");
  EXPECT_EQ(nameOf(stage.list()->child(0)), "Empty text");
  EXPECT_EQ(nameOf(stage.list()->child(1)), "Blank text");
}

TEST(SearchField, writesAndShowsWhatIsSearched) {
  ListStage stage(2);
  auto* const field = qobject_cast<QLineEdit*>(stage.widget(QAccessible::EditableText, "Search"));
  QTest::keyClicks(field, "re");
  EXPECT_EQ(stage.search, String("re"));
  stage.search = String("other");
  stage.showAgain();
  EXPECT_EQ(field->text(), "other");
  QTest::keyClick(field, Qt::Key_Escape);
  EXPECT_EQ(stage.search, String());
}

TEST(SearchField, theKeyForFindingLeadsToIt) {
  ListStage stage(2);
  stage.view().setFocus();
  QTest::keyClick(&stage.window(), Qt::Key_F, Qt::ControlModifier);
  EXPECT_EQ(QApplication::focusWidget(), stage.widget(QAccessible::EditableText, "Search"));
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
  EXPECT_EQ(QApplication::focusWidget(), &stage.view());
}

}  // namespace
}  // namespace tarnix::qt
