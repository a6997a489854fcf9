#include <gtest/gtest.h>

#include <QApplication>
#include <QLineEdit>
#include <QPalette>
#include <QPushButton>
#include <QTest>
#include <algorithm>
#include <array>
#include <map>

#include "backends/qt/rows/row_view.h"
#include "backends/qt/stage.h"
#include "backends/qt/theme/symbols.h"
#include "backends/qt/theme/text.h"
#include "backends/qt/theme/theme.h"
#include "contract/text_host.h"

namespace tarnix::qt {
namespace {

QPalette desktopWithAccent(const QColor& accent) {
  QPalette palette(Qt::lightGray);
  palette.setColor(QPalette::Highlight, accent);
  return palette;
}

TEST(Theme, textsCanBeReadInBothSchemesWhateverTheAccent) {
  for (const auto scheme : {ColorScheme::light, ColorScheme::dark}) {
    for (const char* accent : {"#2f6fed", "#ffee00", "#000040", "#3daee9", "#808080", "#ff0000"}) {
      const QPalette palette = themePalette(desktopWithAccent(QColor(accent)), true, scheme);
      const auto ratio = [&](QPalette::ColorRole text, QPalette::ColorRole ground,
                             QPalette::ColorGroup group = QPalette::Active) {
        return contrast(palette.color(group, text), palette.color(group, ground));
      };
      SCOPED_TRACE(accent);
      for (const auto ground : {QPalette::Base, QPalette::AlternateBase}) {
        EXPECT_GE(ratio(QPalette::Text, ground), 4.5);
        EXPECT_GE(ratio(QPalette::PlaceholderText, ground), 4.5);
        EXPECT_GE(ratio(QPalette::Link, ground), 4.5);
      }
      EXPECT_GE(ratio(QPalette::HighlightedText, QPalette::Highlight), 4.5);
      EXPECT_GE(ratio(QPalette::HighlightedText, QPalette::Highlight, QPalette::Inactive), 4.5);
      EXPECT_GE(ratio(QPalette::ButtonText, QPalette::Button, QPalette::Disabled), 4.5);
      EXPECT_GE(contrast(palette.color(QPalette::BrightText), pressedButton(palette)), 4.5);
    }
  }
}

// Of what is drawn in a part of a widget: the pixel that stands out most against the commonest.
double drawnContrast(QWidget& widget, const QRect& part) {
  const QImage drawn = widget.grab(part).toImage();
  std::map<QRgb, int> counts;
  for (int i = 0; i < drawn.width() * drawn.height(); ++i) {
    ++counts[drawn.pixel(i % drawn.width(), i / drawn.width())];
  }
  const auto byCount = [](const auto& a, const auto& b) { return a.second < b.second; };
  const QColor ground(std::ranges::max_element(counts, byCount)->first);
  double most = 1;
  for (const auto& [color, count] : counts) most = std::max(most, contrast(QColor(color), ground));
  return most;
}

TEST(Mirrored, whatLeadsStandsOnTheRight) {
  Stage stage;
  stage.window().setLayoutDirection(Qt::RightToLeft);
  std::optional<UUID> selection;
  String search;
  bool isOn = true;
  stage.show(NavigationView(
      VStack({List(bindingTo(selection), {Section("Tarnix", {})})
                  .searchable(bindingTo(search), modifiers::SearchFieldPlacement::sidebar),
              Toggle("Active", bindingTo(isOn)).toggleStyle(modifiers::ToggleStyle::switchControl)}),
      Text("detail").navigationTitle("Title")));
  const auto inkAt = [](QWidget& widget, int fromRight, int width) {
    return drawnContrast(widget, QRect(widget.width() - fromRight - width, 5, width, widget.height() - 10));
  };
  QWidget& title = *stage.widget(QAccessible::StaticText, "Title");
  EXPECT_GT(inkAt(title, 0, 30), 4.5);
  EXPECT_EQ(inkAt(title, 100, 30), 1);
  EXPECT_GT(inkAt(*stage.window().findChild<QLineEdit*>(), 28, 40), 4.5) << "beside the magnifier";
  EXPECT_GT(inkAt(*stage.widget(QAccessible::CheckBox, "Active"), 3, 30), 4.5);
}

class DrawnLook : public testing::TestWithParam<std::tuple<ColorScheme, const char*>> {
 protected:
  DrawnLook() : former_(QApplication::palette()) {
    const auto [scheme, accent] = GetParam();
    QApplication::setPalette(themePalette(desktopWithAccent(QColor(accent)), true, scheme));
    stage_.show(NavigationView(
        VStack(
            {List(bindingTo(selection_), {Section("Tarnix", {.count = 2, .row = row, .positionOfTag = {}})})
                 .searchable(bindingTo(search_), modifiers::SearchFieldPlacement::sidebar),
             Toggle("", bindingTo(isOn_))
                 .toggleStyle(modifiers::ToggleStyle::switchControl)
                 .accessibilityLabel("Switch")}),
        VStack({Button([] {}, Text("MMM")), test::TextHost{"text"}})));
  }
  ~DrawnLook() override { QApplication::setPalette(former_); }

  static View row(std::size_t position) { return NavigationLink({Text("")}).badge(44).tag(tags()[position]); }
  static const std::array<UUID, 2>& tags() {
    static const std::array<UUID, 2> tags{UUID::random(), UUID::random()};
    return tags;
  }

  QPalette former_;
  Stage stage_;
  std::optional<UUID> selection_ = tags()[0];
  String search_;
  bool isOn_ = false;
};

TEST_P(DrawnLook, textsStandOut) {
  auto& rows = *stage_.window().findChild<RowView*>();
  rows.selectionModel()->select(rows.model()->index(0, 0), QItemSelectionModel::ClearAndSelect);
  for (const int row : {0, 1}) {
    const QRect rect = rows.visualRect(rows.model()->index(row, 0));
    const QRect pill(rect.right() - 38, rect.top() + 8, 14, 13);
    EXPECT_GE(drawnContrast(*rows.viewport(), pill), 4.5) << "number of row " << row;
    EXPECT_GE(drawnContrast(*rows.viewport(), rect.adjusted(35, 4, -60, -4)), 4.5) << "empty row " << row;
  }
  auto& field = *stage_.window().findChild<QLineEdit*>();
  EXPECT_GE(drawnContrast(field, field.rect().adjusted(30, 4, -30, -4)), 4.5);
  field.setFocus();
  const QImage focused = field.grab().toImage();
  const auto inkIn = [&](int x) {
    int count = 0;
    for (int y = 6; y < focused.height() - 6; ++y)
      count += focused.pixel(x, y) != focused.pixel(x, 4) ? 1 : 0;
    return count;
  };
  int caret = 26;  // Behind the magnifier.
  while (caret < 40 && inkIn(caret) == 0) ++caret;
  EXPECT_GE(inkIn(caret), 12) << "the caret is drawn";
  EXPECT_EQ(inkIn(caret + 1), 0) << "and keeps off the placeholder";
  auto& button = *stage_.window().findChild<QPushButton*>();
  button.setEnabled(false);
  EXPECT_GE(drawnContrast(button, button.rect().adjusted(8, 4, -8, -4)), 4.5);
}

TEST_P(DrawnLook, theSwitchStandsOutFromTheSidebarAndItsKnobFromIt) {
  auto& button = *stage_.widget(QAccessible::CheckBox, "Switch");
  const QColor sidebar = QApplication::palette().color(QPalette::AlternateBase);
  for (const bool isOn : {false, true}) {
    isOn_ = isOn;
    static_cast<QAbstractButton&>(button).setChecked(isOn);
    QTest::qWait(200);  // The knob glides.
    const QImage drawn = button.grab().toImage();
    const QColor track = drawn.pixelColor(drawn.width() / 2, drawn.height() / 2 - 9);
    EXPECT_GE(contrast(track, sidebar), 3) << isOn;
    EXPECT_GE(contrast(track, Qt::white), 3) << isOn;
  }
}

TEST_P(DrawnLook, theFocusShowsInEveryControl) {
  const QColor ring = QApplication::palette().color(QPalette::Link);
  for (QWidget* const widget : stage_.window().findChildren<QWidget*>()) {
    if (!(widget->focusPolicy() & Qt::TabFocus) || !widget->isVisible()) continue;
    const QImage before = widget->grab().toImage();
    widget->setFocus(Qt::TabFocusReason);
    stage_.window().setAttribute(Qt::WA_KeyboardFocusChange);
    EXPECT_NE(widget->grab().toImage(), before) << widget->metaObject()->className();
  }
  EXPECT_GE(contrast(ring, QApplication::palette().color(QPalette::AlternateBase)), 3);
}

INSTANTIATE_TEST_SUITE_P(Schemes, DrawnLook,
                         testing::Combine(testing::Values(ColorScheme::light, ColorScheme::dark),
                                          testing::Values("#2f6fed", "#000040", "#ffee00")));

TEST(Theme, takesTheAccentOfTheDesktopWhereItIsOne) {
  const auto hue = [](const char* accent, bool isDesktops) {
    return themePalette(desktopWithAccent(QColor(accent)), isDesktops, ColorScheme::light)
        .color(QPalette::Highlight)
        .hue();
  };
  EXPECT_NEAR(hue("#c01c28", true), QColor("#c01c28").hue(), 3);
  EXPECT_NEAR(hue("#c01c28", false), QColor("#2f6fed").hue(), 3);
  EXPECT_NEAR(hue("#909090", true), QColor("#2f6fed").hue(), 3);
}

TEST(Theme, followsTheSchemeOfTheDesktop) {
  EXPECT_EQ(schemeOf(QPalette(QColor("#202020"))), ColorScheme::dark);
  EXPECT_EQ(schemeOf(QPalette(QColor("#eeeeee"))), ColorScheme::light);
}

TEST(Symbols, areThereForEveryNameInUse) {
  for (const char* name :
       {"doc", "textformat.abc.dottedunderline", "trash", "rectangle.dashed.and.paperclip", "sidebar.leading",
        "magnifyingglass", "exclamationmark.triangle", "xmark.circle"}) {
    EXPECT_TRUE(hasSymbol(name)) << name;
    const QImage drawn = symbolPixmap(name, 16, 2, {Qt::red, Qt::green}).toImage();
    bool hasPrimary = false;
    for (int i = 0; i < drawn.width() * drawn.height(); ++i) {
      hasPrimary |= drawn.pixelColor(i % drawn.width(), i / drawn.width()) == QColor(Qt::red);
    }
    EXPECT_TRUE(hasPrimary) << name << " is drawn in the tint it is given";
  }
  EXPECT_FALSE(hasSymbol(""));
  EXPECT_FALSE(hasSymbol("no.such.symbol"));
}

TEST(Titles, areCutBetweenCharacters) {
  EXPECT_EQ(titleStart("short"), "short");
  std::string faces;
  for (int i = 0; i < 1000; ++i) faces += "\xF0\x9F\x98\x80";
  const QString start = titleStart("x" + faces);
  EXPECT_EQ(start.size(), kTitleLimit - 1 + 1);
  EXPECT_TRUE(start.endsWith(u'…'));
  EXPECT_FALSE(start.contains(QChar::ReplacementCharacter));
  EXPECT_FALSE(start.at(start.size() - 2).isHighSurrogate());
}

TEST(Titles, becomeOneLine) {
  EXPECT_EQ(singleLine("  a  b"), "a  b");
  EXPECT_EQ(singleLine("\n\n int x;\r\n\n    return;\n"), "int x; return; ");
  EXPECT_EQ(singleLine(QString("tab\tstop") + QChar::LineSeparator + "x"), "tab stop x");
}

}  // namespace
}  // namespace tarnix::qt
