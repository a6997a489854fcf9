#include <gtest/gtest.h>

#include <QAbstractScrollArea>

#include "backends/qt/stage.h"
#include "contract/text_host.h"

namespace tarnix::qt {
namespace {

TEST(Renderer, placesOfTheSameKindKeepTheirWidgets) {
  Stage stage;
  stage.show(VStack({Text("one"), Button([] {}, Text("Go")), Spacer()}));
  const QWidget* text = stage.widget(QAccessible::StaticText, "one");
  const QWidget* button = stage.widget(QAccessible::Button, "Go");
  stage.show(VStack({Text("two"), Button([] {}, Text("Stop")), Spacer(), Text("three")}));
  EXPECT_EQ(stage.widget(QAccessible::StaticText, "two"), text);
  EXPECT_EQ(stage.widget(QAccessible::Button, "Stop"), button);
  EXPECT_TRUE(stage.has(QAccessible::StaticText, "three"));
  stage.show(VStack({Text("two")}));
  EXPECT_EQ(stage.widget(QAccessible::StaticText, "two"), text);
  EXPECT_FALSE(stage.has(QAccessible::Button, "Stop"));
}

TEST(Renderer, anotherIdentityStartsAfresh) {
  Stage stage;
  const UUID one = UUID::random();
  stage.show(VStack({View(test::TextHost{"same"}).id(one)}));
  const QWidget* first = stage.window().findChild<QAbstractScrollArea*>();
  stage.show(VStack({View(test::TextHost{"other"}).id(one)}));
  EXPECT_EQ(stage.window().findChild<QAbstractScrollArea*>(), first);
  bool isGone = false;
  QObject::connect(first, &QObject::destroyed, first, [&] { isGone = true; });
  stage.show(VStack({View(test::TextHost{"other"}).id(UUID::random())}));
  EXPECT_TRUE(isGone);
}

TEST(Renderer, anotherKindTakesThePlaceOfTheFormer) {
  Stage stage;
  stage.show(VStack({Text("above"), Text("middle"), Text("below")}));
  stage.show(VStack({Text("above"), Button([] {}, Text("middle")), Text("below")}));
  EXPECT_FALSE(stage.has(QAccessible::StaticText, "middle"));
  const auto top = [&](QAccessible::Role role, const char* name) {
    return stage.find(role, name)->rect().top();
  };
  EXPECT_LT(top(QAccessible::StaticText, "above"), top(QAccessible::Button, "middle"));
  EXPECT_LT(top(QAccessible::Button, "middle"), top(QAccessible::StaticText, "below"));
}

TEST(Renderer, paddingLiesAroundItsElement) {
  Stage stage;
  stage.show(HStack({Text("a").padding({.leading = 30}), Spacer(), Text("b").padding({.trailing = 12})}));
  const QRect window = stage.window().geometry();
  EXPECT_EQ(stage.find(QAccessible::StaticText, "a")->rect().left() - window.left(), 30);
  EXPECT_EQ(window.right() - stage.find(QAccessible::StaticText, "b")->rect().right(), 12);
  stage.show(HStack({Text("a").padding({.leading = 50}), Spacer(), Text("b")}));
  EXPECT_EQ(stage.find(QAccessible::StaticText, "a")->rect().left() - window.left(), 50);
  EXPECT_EQ(window.right() - stage.find(QAccessible::StaticText, "b")->rect().right(), 0);
}

TEST(Renderer, paddingIsMirroredWhereOneReadsFromTheRight) {
  Stage stage;
  stage.window().setLayoutDirection(Qt::RightToLeft);
  stage.show(HStack({Text("a").padding({.leading = 30}), Spacer()}));
  const QRect window = stage.window().geometry();
  EXPECT_EQ(window.right() - stage.find(QAccessible::StaticText, "a")->rect().right(), 30);
  stage.window().setLayoutDirection(Qt::LeftToRight);
  Stage::settle();
  EXPECT_EQ(stage.find(QAccessible::StaticText, "a")->rect().left() - window.left(), 30);
}

TEST(Renderer, aStackWithoutSpacersStandsInTheMiddle) {
  Stage stage;
  stage.show(VStack({Text("one"), Text("two")}));
  const QRect window = stage.window().geometry();
  const int above = stage.find(QAccessible::StaticText, "one")->rect().top() - window.top();
  const int below = window.bottom() - stage.find(QAccessible::StaticText, "two")->rect().bottom();
  EXPECT_GT(above, 100);
  EXPECT_NEAR(above, below, 1);
}

}  // namespace
}  // namespace tarnix::qt
