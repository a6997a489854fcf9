#include <gtest/gtest.h>

#include <QPalette>

#include "backends/qt/symbols.h"
#include "backends/qt/text.h"
#include "backends/qt/theme.h"

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
      EXPECT_GE(ratio(QPalette::BrightText, QPalette::Button), 4.5);
    }
  }
}

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
