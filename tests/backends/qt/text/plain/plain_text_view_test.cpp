#include "backends/qt/text/plain/plain_text_view.h"

#include <gmock/gmock.h>

#include <QAbstractEventDispatcher>
#include <QAccessible>
#include <QAction>
#include <QApplication>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QScrollBar>
#include <QWheelEvent>
#include <algorithm>
#include <string>
#include <vector>

#include "backends/qt/stage.h"

namespace tarnix::qt {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::string numberedLines(std::size_t count) {
  std::string text;
  for (std::size_t i = 0; i < count; ++i) text += "line " + std::to_string(i) + "\n";
  return text + "the end";
}

// The unit as often as it takes to have at least so many bytes, and less than twice as many.
std::string filledWith(std::string_view unit, std::size_t bytes) {
  std::string text(unit);
  while (text.size() < bytes) text += text;
  return text;
}

// A view on the screen, used as a person with mouse, keyboard and screen reader would.
class PlainTextViewTest : public ::testing::Test {
 protected:
  PlainTextViewTest() {
    view.resize(420, 300);
    view.setAccessibleName("Clip text");
    static_cast<QWidget&>(view).show();
    QApplication::processEvents();
  }

  QAccessibleInterface& reader() { return *QAccessible::queryAccessibleInterface(&view); }
  QAccessibleTextInterface& text() { return *reader().textInterface(); }

  void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QKeyEvent event(QEvent::KeyPress, key, modifiers);
    QApplication::sendEvent(&view, &event);
  }

  // Clicks are a minute apart unless a test moves the clock less.
  void mouse(QEvent::Type type, QPointF point, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    const bool isDown = type != QEvent::MouseButtonRelease;
    const Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
    QMouseEvent event(type, point, view.viewport()->mapToGlobal(point), button,
                      isDown ? Qt::LeftButton : Qt::NoButton, modifiers);
    event.setTimestamp(time);
    QApplication::sendEvent(view.viewport(), &event);
  }

  QPointF before(std::size_t offset) { return QRectF(view.caretRect(offset)).center() + QPointF(0.6, 0); }

  void drag(QPointF from, QPointF to) {
    time += 60000;
    mouse(QEvent::MouseButtonPress, from);
    mouse(QEvent::MouseMove, to);
    mouse(QEvent::MouseButtonRelease, to);
  }

  void wheel(int eighthsOfDegree) {
    const QPointF point(50, 50);
    QWheelEvent event(point, view.viewport()->mapToGlobal(point), QPoint(), QPoint(0, eighthsOfDegree),
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(view.viewport(), &event);
  }

  std::string topRow() { return rowAt(view.visibleRange().begin); }
  std::string rowAt(std::size_t offset) {
    const TextRange row = view.rowAround(offset);
    return view.text().str().substr(row.begin, row.end - row.begin);
  }
  std::string selected() { return view.selectedText().str(); }

  std::optional<String> copied() const { return pasteboard().stringForType(NSPasteboardTypeString); }

  PlatformScope platform{testPlatform()};
  PlainTextView view;
  quint64 time = 1;
};

TEST_F(PlainTextViewTest, aDragSelectsTheBytesOfTheTextWhateverTheyAre) {
  const std::string source = "first\r\nsecond \xFF\xC3( \x1B[0m\rthird שלום\nlast";
  view.setText(String(source));
  const std::size_t from = source.find("rst");
  const std::size_t to = source.find("ird");
  drag(before(from), before(to));
  EXPECT_EQ(selected(), source.substr(from, to - from));
  drag(before(to), before(from));
  EXPECT_EQ(selected(), source.substr(from, to - from)) << "backwards";
  EXPECT_EQ(view.cursor(), from);
}

TEST_F(PlainTextViewTest, clicksSelectWordsLinesAndUpToThePointer) {
  view.setText("alpha beta gamma\r\nnext line");
  const QPointF inBeta = before(8);
  mouse(QEvent::MouseButtonDblClick, inBeta);
  EXPECT_EQ(selected(), "beta");
  mouse(QEvent::MouseMove, before(14));
  EXPECT_EQ(selected(), "beta gamma");
  mouse(QEvent::MouseMove, before(2));
  EXPECT_EQ(selected(), "alpha beta") << "the word that it began with stays";
  time += 50;
  mouse(QEvent::MouseButtonPress, inBeta);
  EXPECT_EQ(selected(), "alpha beta gamma\r\n");
  time += 60000;
  mouse(QEvent::MouseButtonPress, before(6));
  EXPECT_EQ(selected(), "");
  mouse(QEvent::MouseButtonPress, before(20), Qt::ShiftModifier);
  EXPECT_EQ(selected(), "beta gamma\r\nne");
}

TEST_F(PlainTextViewTest, aDragBeyondTheEdgeScrollsUntilTheButtonIsReleased) {
  view.setText(numberedLines(200));
  mouse(QEvent::MouseButtonPress, before(0));
  const QPointF below(400, view.viewport()->height() + 400);
  mouse(QEvent::MouseMove, below);
  for (int turn = 0; turn < 1000 && view.cursor() < view.text().size(); ++turn) {
    QApplication::processEvents(QEventLoop::WaitForMoreEvents);
  }
  EXPECT_EQ(view.selection(), (TextRange{0, view.text().size()}));
  mouse(QEvent::MouseButtonRelease, below);
  EXPECT_THAT(QAbstractEventDispatcher::instance()->registeredTimers(&view), IsEmpty());
}

TEST_F(PlainTextViewTest, shiftAndArrowsSelectByCharactersWordsAndRows) {
  const std::string source = "e\u0301a\r\n👍🏽 two words\n\x02z";
  view.setText(String(source));
  std::vector<std::size_t> places;
  for (int i = 0; i < 4; ++i) {
    press(Qt::Key_Right, Qt::ShiftModifier);
    places.push_back(view.cursor());
  }
  EXPECT_THAT(places, ElementsAre(3, 4, 6, 14)) << "clusters and CRLF are one step";
  press(Qt::Key_Right, Qt::ShiftModifier | Qt::ControlModifier);
  press(Qt::Key_Right, Qt::ShiftModifier | Qt::ControlModifier);
  EXPECT_EQ(selected(), "e\u0301a\r\n👍🏽 two ");
  press(Qt::Key_Down, Qt::ShiftModifier);
  press(Qt::Key_End, Qt::ShiftModifier);
  EXPECT_EQ(view.cursor(), source.size());
  press(Qt::Key_Left, Qt::ShiftModifier);
  press(Qt::Key_Left, Qt::ShiftModifier);
  EXPECT_EQ(view.cursor(), source.size() - 2) << "a label is one character";
  press(Qt::Key_Left, Qt::ShiftModifier);
  EXPECT_EQ(view.cursor(), source.size() - 3);
  press(Qt::Key_Right, Qt::ShiftModifier);
  press(Qt::Key_Right, Qt::ShiftModifier);
  EXPECT_EQ(view.cursor(), source.size() - 1);
  press(Qt::Key_Home, Qt::ShiftModifier | Qt::ControlModifier);
  EXPECT_TRUE(view.selection().isEmpty());
}

TEST_F(PlainTextViewTest, everyRowOfALongLineIsReachedBothWaysByKeys) {
  const std::string source =
      filledWith("some words and averyveryveryverylongone ", 30000) + "\n" + filledWith("x", 9000);
  view.setText(String(source));
  const auto walk = [&](int key) {
    std::vector<std::size_t> places;
    do {
      places.push_back(view.cursor());
      press(key, Qt::ShiftModifier);
      EXPECT_FALSE(view.caretRect(view.cursor()).isNull()) << "the moving end stays in sight";
    } while (view.cursor() != places.back() && places.size() < source.size());
    return places;
  };
  press(Qt::Key_End, Qt::ShiftModifier);
  const std::vector<std::size_t> down = walk(Qt::Key_Down);
  EXPECT_EQ(down.back(), source.size());
  const std::vector<std::size_t> up = walk(Qt::Key_Up);
  EXPECT_EQ(up.back(), 0u);
  EXPECT_NEAR(static_cast<double>(up.size()), static_cast<double>(down.size()), 1) << "no row is passed over";
  EXPECT_TRUE(std::is_sorted(down.begin(), down.end()));
  EXPECT_TRUE(std::is_sorted(up.rbegin(), up.rend()));
}

TEST_F(PlainTextViewTest, rightIsForwardInOneScriptAndBackInTheOther) {
  view.setText("\u05D0\u05D1\u05D2");
  press(Qt::Key_Left, Qt::ShiftModifier);
  EXPECT_EQ(selected(), "\u05D0");
  press(Qt::Key_Right, Qt::ShiftModifier);
  EXPECT_EQ(selected(), "");
}

TEST_F(PlainTextViewTest, whatIsSelectedIsCopiedAndAllOfItWithoutASecondCopy) {
  const String source = numberedLines(1000);
  view.setText(source);
  press(Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(pasteboard().changeCount(), 0);
  view.select(6, 0);
  press(Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(copied(), String("line 0"));
  press(Qt::Key_A, Qt::ControlModifier);
  press(Qt::Key_C, Qt::ControlModifier);
  EXPECT_TRUE(copied()->sharesBytesWith(source));
}

TEST_F(PlainTextViewTest, theContextMenuOffersWhatCanBeDone) {
  view.setText("some text");
  const auto menuActions = [this] {
    QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(20, 20), view.mapToGlobal(QPoint(20, 20)));
    QApplication::sendEvent(view.viewport(), &event);
    return view.findChildren<QMenu*>().back()->actions();
  };
  const auto actions = menuActions();
  ASSERT_EQ(actions.size(), 2);
  EXPECT_EQ(actions[0]->text(), "Copy");
  EXPECT_FALSE(actions[0]->isEnabled());
  actions[1]->trigger();
  EXPECT_EQ(selected(), "some text");
  menuActions()[0]->trigger();
  EXPECT_EQ(copied(), String("some text"));
}

TEST_F(PlainTextViewTest, anEqualTextChangesNothingAndAnotherOneStartsAtTheTop) {
  const std::string source = numberedLines(500);
  view.setText(String(source));
  view.select(5, 50);
  view.verticalScrollBar()->setValue(view.verticalScrollBar()->maximum() / 2);
  const TextRange visible = view.visibleRange();
  ASSERT_GT(visible.begin, 0u);
  view.setText(String(view.text()));
  view.setText(String(source));
  EXPECT_EQ(view.visibleRange(), visible);
  EXPECT_EQ(view.selection(), (TextRange{5, 50}));
  view.setText(String(numberedLines(499)));
  EXPECT_EQ(topRow(), "line 0");
  EXPECT_TRUE(view.selection().isEmpty());
  EXPECT_EQ(view.verticalScrollBar()->value(), 0);
}

TEST_F(PlainTextViewTest, keysLeadToEitherEndAndPagesOverlapByARow) {
  const std::string source = numberedLines(300);
  view.setText(String(source));
  press(Qt::Key_PageDown);
  const std::size_t second = view.visibleRange().begin;
  press(Qt::Key_PageUp);
  EXPECT_EQ(view.visibleRange().begin, 0u);
  EXPECT_GT(view.visibleRange().end, second);
  press(Qt::Key_End, Qt::ControlModifier);
  EXPECT_EQ(view.visibleRange().end, source.size());
  EXPECT_EQ(view.verticalScrollBar()->value(), view.verticalScrollBar()->maximum());
  press(Qt::Key_Home, Qt::ControlModifier);
  EXPECT_EQ(topRow(), "line 0");
  press(Qt::Key_Down);
  press(Qt::Key_Down);
  EXPECT_NE(topRow(), "line 0");
}

TEST_F(PlainTextViewTest, theWheelPassesEveryRowOnItsWayToTheEndAndBack) {
  view.setText(String(numberedLines(150) + "\n" + filledWith("wrapped words ", 12000) + "\n"));
  QScrollBar& bar = *view.verticalScrollBar();
  while (bar.value() < bar.maximum()) {
    const TextRange above = view.visibleRange();
    const int value = bar.value();
    wheel(-120);
    ASSERT_GT(bar.value(), value);
    ASSERT_LE(view.visibleRange().begin, above.end) << "no row is jumped over";
    ASSERT_GE(view.visibleRange().begin, above.begin);
  }
  EXPECT_EQ(view.visibleRange().end, view.text().size());
  while (bar.value() > 0) {
    const int value = bar.value();
    wheel(120);
    ASSERT_LT(bar.value(), value);
  }
  EXPECT_EQ(topRow(), "line 0");
}

TEST_F(PlainTextViewTest, theBarIsThereOnlyWhenTheTextIsHigherThanTheView) {
  view.setText("one\ntwo");
  EXPECT_EQ(view.verticalScrollBar()->maximum(), 0);
  view.setText(String(numberedLines(40)));
  EXPECT_GT(view.verticalScrollBar()->maximum(), 0);
  view.resize(420, 2000);
  EXPECT_EQ(view.verticalScrollBar()->maximum(), 0);
  EXPECT_EQ(view.visibleRange(), (TextRange{0, view.text().size()}));
}

TEST_F(PlainTextViewTest, theRowAtTheTopStaysThereWhileTheWindowIsResized) {
  view.setText(
      String(filledWith("a paragraph of several words that wraps, and then some more of it\n", 60000)));
  view.verticalScrollBar()->setValue(view.verticalScrollBar()->maximum() / 3);
  const std::size_t top = view.visibleRange().begin;
  for (const int width : {300, 250, 700, 350}) {
    view.resize(width, 300);
    EXPECT_TRUE(view.visibleRange().begin <= top && view.rowAround(view.visibleRange().begin).end > top)
        << width;
  }
  view.resize(420, 300);
  EXPECT_EQ(view.visibleRange().begin, top);
}

// What a turn costs is what it lays out: it must not depend on the size of the text, nor on where it is
// looked at.
TEST_F(PlainTextViewTest, noTurnLaysOutMoreThanAFewScreensOfAHugeText) {
  // A flood of marks takes few rows for many bytes.
  const std::pair<const char*, std::size_t> cases[] = {{"a line of a log that says nothing\n", 8'000},
                                                       {"no breaks but spaces ", 48'000},
                                                       {"x", 48'000},
                                                       {"\xFF", 48'000},
                                                       {"\r", 1'000},
                                                       {"\u0351", 400'000}};
  for (const auto& [unit, most] : cases) {
    const String huge = filledWith(unit, 20'000'000) + "the end";
    const auto size = static_cast<double>(huge.size());
    std::size_t before = view.laidOutBytes();
    const auto endTurn = [&, text = unit, limit = most] {
      QApplication::processEvents();
      EXPECT_LE(view.laidOutBytes() - before, limit) << ::testing::PrintToString(text);
      before = view.laidOutBytes();
    };
    view.setText(huge);
    endTurn();
    for (int part = 1; part <= 4; ++part) {
      view.verticalScrollBar()->setSliderPosition(view.verticalScrollBar()->maximum() / 4 * part);
      endTurn();
      EXPECT_NEAR(static_cast<double>(view.visibleRange().begin), 0.25 * part * size, 0.01 * size);
    }
    press(Qt::Key_End, Qt::ControlModifier);
    endTurn();
    EXPECT_EQ(view.visibleRange().end, huge.size());
    EXPECT_TRUE(rowAt(huge.size()).ends_with("the end"));
    view.resize(view.width() == 420 ? 500 : 420, 300);
    endTurn();
  }
}

TEST_F(PlainTextViewTest, whatIsInSightIsLaidOutOnce) {
  view.setText(String(numberedLines(1000)));
  view.viewport()->repaint();
  const std::size_t before = view.laidOutBytes();
  view.select(3, 40);
  view.viewport()->repaint();
  wheel(-120);
  wheel(120);
  EXPECT_LE(view.laidOutBytes() - before, 100u) << "the rows that come into sight";
}

TEST_F(PlainTextViewTest, positionsOfAHugeTextAreCountedInSlicesOnceSomebodyAsks) {
  const String huge = filledWith("zählen\n", 20'000'000);
  view.setText(huge);
  QApplication::processEvents();
  const auto& timers = *QAbstractEventDispatcher::instance();
  EXPECT_THAT(timers.registeredTimers(&view), IsEmpty());
  int count = text().characterCount();
  EXPECT_LE(count, 1100 * 1024);
  for (int turns = 0; !timers.registeredTimers(&view).isEmpty(); ++turns) {
    ASSERT_LT(turns, 200);
    QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    ASSERT_LE(text().characterCount() - count, 1200 * 1024) << "a turn counts one slice";
    count = text().characterCount();
  }
  EXPECT_EQ(static_cast<std::size_t>(count), huge.size() / 8 * 7);
  EXPECT_EQ(text().text(count - 7, -1), "zählen\n");
  EXPECT_LE(text().text(0, -1).size(), 256 * 1024);
}

TEST_F(PlainTextViewTest, aScreenReaderFindsAReadOnlyTextUnderItsName) {
  view.setText("some 😀 text\xFF!");
  EXPECT_EQ(reader().role(), QAccessible::EditableText);
  EXPECT_TRUE(reader().state().readOnly && reader().state().focusable && reader().state().selectableText);
  EXPECT_EQ(reader().text(QAccessible::Name), "Clip text");
  EXPECT_EQ(reader().text(QAccessible::Value), u"some 😀 text\uFFFD!"_qs);
  EXPECT_EQ(reader().childCount(), 0);
  EXPECT_EQ(text().characterCount(), 14);
  EXPECT_EQ(text().text(5, 7), u"😀"_qs);
  EXPECT_EQ(text().text(12, 14), u"\uFFFD!"_qs);
}

TEST_F(PlainTextViewTest, aScreenReaderWalksByCharactersWordsAndLines) {
  view.setText("one e\u0301a\r\nthe second\n\nlast");
  int start = 0;
  int end = 0;
  EXPECT_EQ(text().textAtOffset(4, QAccessible::CharBoundary, &start, &end), u"e\u0301"_qs);
  EXPECT_EQ(text().textAtOffset(13, QAccessible::WordBoundary, &start, &end), "second");
  EXPECT_EQ(start, 13);
  EXPECT_EQ(end, 19);
  EXPECT_EQ(text().textAtOffset(2, QAccessible::LineBoundary, &start, &end), u"one e\u0301a"_qs);
  EXPECT_EQ(text().textAtOffset(2, QAccessible::ParagraphBoundary, &start, &end), u"one e\u0301a\r\n"_qs);
  EXPECT_EQ(text().textAfterOffset(2, QAccessible::ParagraphBoundary, &start, &end), "the second\n");
  EXPECT_EQ(text().textBeforeOffset(22, QAccessible::ParagraphBoundary, &start, &end), "\n");
  EXPECT_EQ(text().textBeforeOffset(0, QAccessible::CharBoundary, &start, &end), "");
  EXPECT_EQ(text().textAfterOffset(25, QAccessible::WordBoundary, &start, &end), "");
}

TEST_F(PlainTextViewTest, aScreenReaderSelectsScrollsAndPointsByPositions) {
  view.setText(String("😀 " + numberedLines(400)));
  text().setSelection(0, 3, 9);
  EXPECT_EQ(selected(), "line 0");
  int start = 0;
  int end = 0;
  text().selection(0, &start, &end);
  EXPECT_EQ(start, 3);
  EXPECT_EQ(end, 9);
  const QRect character = text().characterRect(5);
  EXPECT_EQ(text().offsetAtPoint(character.center()), 5);
  const int last = text().characterCount() - 3;
  EXPECT_TRUE(text().characterRect(last).isNull()) << "out of sight";
  text().scrollToSubstring(last, last + 3);
  EXPECT_FALSE(text().characterRect(last).isNull());
  text().removeSelection(0);
  EXPECT_EQ(text().selectionCount(), 0);
}

}  // namespace
}  // namespace tarnix::qt
