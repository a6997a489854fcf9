#include "backends/qt/text/rich/rich_text_view.h"

#include <gmock/gmock.h>

#include <QScrollBar>
#include <random>

#include "backends/qt/text/rich/rich_text_stage.h"

namespace tarnix::qt {
namespace {

TextAttributes coloured(std::optional<TextColor> color, std::optional<TextColor> highlight) {
  TextAttributes look;
  look.font = {"", 24, true};
  look.color = color;
  look.highlight = highlight;
  return look;
}

TEST_F(RichTextViewTest, everyColourCanBeReadOnWhateverLiesBelowItInBothSchemes) {
  const std::optional<TextColor> colors[] = {std::nullopt,  {{0, 0, 0}},       {{255, 255, 255}},
                                             {{0, 0, 128}}, {{255, 255, 0}},   {{200, 0, 0}},
                                             {{0, 160, 0}}, {{128, 128, 128}}, {{30, 32, 36}}};
  Writer writer;
  for (const auto& highlight : colors) {
    for (const auto& color : colors) writer.write("MM", coloured(color, highlight)).write(" ");
    writer.end();
  }
  view.setAttributedText(writer.take());
  view.resize(900, 700);
  for (const auto scheme : {ColorScheme::light, ColorScheme::dark, ColorScheme::light}) {
    setScheme(scheme);
    for (std::size_t at = 0; at < view.text().size(); at += view.text().view()[at + 3] == '\n' ? 4 : 3)
      ASSERT_GE(drawnContrast(view, at, at + 2), 4.5) << at << " in scheme " << static_cast<int>(scheme);
  }
  setScheme(ColorScheme::dark);
  view.setGround({}, false);
  EXPECT_LT(drawnContrast(view, 3, 5), 4.5) << "black stays black where colours are to be exact";
}

TEST_F(RichTextViewTest, paragraphsStandWhereTheirStyleSays) {
  ParagraphStyle right;
  right.alignment = TextAlignment::right;
  ParagraphStyle item;
  item.headIndent = 36;
  item.firstLineIndent = 18;
  item.spacingBefore = 30;
  ParagraphStyle mirrored;
  mirrored.direction = WritingDirection::rightToLeft;
  ParagraphStyle tabs;
  tabs.tabStops = {{150, TextAlignment::right}};
  ParagraphStyle absurd;
  absurd.headIndent = 1e6;
  absurd.firstLineIndent = -1e6;
  absurd.spacingAfter = 1e9;
  TextAttributes big;
  big.font.pointSize = 1e9;
  view.setAttributedText(
      Writer()
          .write("left")
          .end()
          .write("right")
          .end(right)
          .write("•\titem that is long enough to be wrapped at the end of its first row, and hangs")
          .end(item)
          .write("שלום")
          .end(mirrored)
          .write("a\tb")
          .end(tabs)
          .write("absurd", big)
          .end(absurd)
          .take());
  const auto x = [&](std::size_t offset) { return view.caretRect(offset).left(); };
  const int margin = x(0);
  EXPECT_NEAR(x(find("right") + 5), 500 - margin, 20);
  const std::size_t wrapped = view.rowAround(find("•")).end;
  ASSERT_LT(wrapped, find("שלום"));
  EXPECT_NEAR(x(find("•")), margin + 24, 2) << "18 points";
  EXPECT_NEAR(x(find("item")), margin + 48, 2);
  EXPECT_EQ(x(wrapped), x(find("item"))) << "the other rows hang below the text";
  EXPECT_GE(view.caretRect(find("•")).top() - view.caretRect(find("right")).bottom(), 38);
  EXPECT_NEAR(x(find("שלום")), 500 - margin, 20);
  EXPECT_NEAR(x(find("a\tb") + 3), margin + 200, 2);
  view.reveal(view.text().size());
  EXPECT_FALSE(view.caretRect(find("absurd")).isNull());
  EXPECT_LT(x(find("absurd")), 500);
}

TEST_F(RichTextViewTest, tablesStandInCellsHoweverTheirRowsAreNumbered) {
  view.setAttributedText(Writer()
                             .write("before")
                             .end()
                             .cell("a", {0, 0, 0})
                             .cell("b", {0, 0, 1})
                             .cell("c", {0, 0, 2}, true)
                             .cell("wide", {0, 1, 0, 1, 2})
                             .cell("d", {0, 1, 2}, true)
                             .cell("high", {0, 2, 0, 2})
                             .cell("inner", {1, 0, 0, 1, 1, 2}, true)
                             .cell("beside", {0, 2, 1})
                             .cell("f", {0, 2, 2}, true)
                             .cell("", {0, 3, 0})
                             .cell("g", {0, 3, 1})
                             .cell("h", {0, 3, 2}, true)
                             .cell("next table", {2, 0, 0}, true)
                             .write("after")
                             .take());
  const auto at = [&](const char* text) { return view.caretRect(find(text)); };
  EXPECT_EQ(at("a").top(), at("b\t").top());
  EXPECT_LT(at("a").left(), at("b\t").left());
  EXPECT_EQ(at("d\n").left(), at("c\n").left()) << "behind the wide cell";
  EXPECT_EQ(at("g\t").left(), at("beside").left()) << "beside the high one";
  EXPECT_GT(at("g\t").top(), at("beside").top());
  EXPECT_GT(at("inner").left(), at("b\t").left()) << "in a cell of its own within the cell";
  EXPECT_GT(at("next table").top(), at("h\n").bottom());
  EXPECT_GT(at("after").top(), at("next table").bottom());
  for (const char* each : {"a\t", "b\t", "wide", "inner", "beside", "g\t", "next"})
    EXPECT_EQ(view.offsetAt(before(find(each))), find(each)) << each;
}

// Whatever a document says of its tables and runs, all of it can be reached.
TEST_F(RichTextViewTest, everyPlaceIsReachedByKeysInDocumentsThatMakeNoSense) {
  for (unsigned seed = 0; seed < 8; ++seed) {
    std::mt19937 random(seed);
    const auto upTo = [&](unsigned most) { return static_cast<unsigned>(random() % (most + 1)); };
    Writer writer;
    for (int i = 0; i < 25; ++i) {
      ParagraphStyle style;
      const auto small = [&](unsigned most) { return static_cast<std::uint16_t>(upTo(most)); };
      const bool isInTable = upTo(4) > 0;
      const TableCell cell{upTo(2), upTo(4), upTo(seed % 2 ? 5 : 100), small(3), small(9), small(3)};
      style.alignment = static_cast<TextAlignment>(upTo(4));
      style.direction = static_cast<WritingDirection>(upTo(1));
      static const char* const kTexts[] = {"",     "word",  "two words", "\u2028", "\f", "\xEF\xB7\x90",
                                           "\x01", "tab\t", "e\u0301"};
      for (unsigned runs = upTo(3); runs > 0; --runs) {
        TextAttributes look;
        look.superscript = static_cast<std::int8_t>(upTo(2)) - 1;
        look.underline = static_cast<LineStyle>(upTo(6));
        look.strikethrough = static_cast<LineStyle>(upTo(3));
        writer.write(kTexts[upTo(8)], look);
      }
      writer.end(style, isInTable && upTo(2) > 0 ? '\t' : '\n', isInTable ? &cell : nullptr);
    }
    view.setAttributedText(writer.take());
    view.viewport()->repaint();
    key(Qt::Key_Home, Qt::ControlModifier | Qt::ShiftModifier);
    for (std::size_t last = view.text().size(); view.cursor() < view.text().size(); last = view.cursor()) {
      key(Qt::Key_Right, Qt::ShiftModifier);
      ASSERT_NE(view.cursor(), last) << "seed " << seed;
    }
    key(Qt::Key_End, Qt::ControlModifier);
    view.viewport()->repaint();
  }
}

TEST_F(RichTextViewTest, anEqualTextChangesNothingAndAnotherLookStartsAfresh) {
  const auto make = [](bool isBold) {
    TextAttributes look;
    look.font.isBold = isBold;
    Writer writer;
    for (int i = 0; i < 200; ++i) writer.write("line " + std::to_string(i), look).end();
    return writer.take();
  };
  view.setAttributedText(make(true));
  view.reveal(view.text().size() / 2);
  view.select(3, 900);
  const TextRange visible = view.visibleRange();
  view.setAttributedText(make(true));
  EXPECT_EQ(view.visibleRange(), visible);
  EXPECT_EQ(view.selection(), (TextRange{3, 900}));
  view.copy();
  EXPECT_EQ(pasteboard().stringForType(NSPasteboardTypeString), view.selectedText());
  view.setAttributedText(make(false));
  EXPECT_EQ(view.visibleRange().begin, 0U);
  EXPECT_TRUE(view.selection().isEmpty());
  const String text = view.text();
  view.setText(text);
  EXPECT_FALSE(view.runAt(0)) << "plain, though its bytes are the same";
}

TEST_F(RichTextViewTest, aLimitOfRowsHidesTheRestOfPlainAndFormattedTexts) {
  std::string lines;
  for (int i = 0; i < 100; ++i) lines += "line " + std::to_string(i) + "\n";
  Writer writer;
  for (int i = 0; i < 50; ++i) writer.write("line " + std::to_string(i) + "\u2028line").end();
  for (const bool isPlain : {true, false}) {
    isPlain ? view.setText(lines) : view.setAttributedText(writer.take());
    view.setRowLimit(3);
    EXPECT_EQ(view.verticalScrollBar()->maximum(), 0);
    const QRect third = view.caretRect(view.rowAround(14).begin);
    const QRect below(0, third.bottom() + 2, view.width(), 200);
    const QImage drawn = view.viewport()->grab(below).toImage();
    QImage empty(drawn.size(), drawn.format());
    empty.setDevicePixelRatio(drawn.devicePixelRatio());
    empty.fill(view.palette().color(QPalette::Base));
    EXPECT_EQ(drawn, empty) << "nothing is drawn below";
    EXPECT_LE(view.offsetAt(QPoint(5, 390)), view.rowAround(14).end);
    view.setRowLimit(0);
    EXPECT_GT(view.verticalScrollBar()->maximum(), 0);
  }
}

// What a turn costs must not grow with the document, nor with how it is made.
TEST_F(RichTextViewTest, noTurnLaysOutMoreThanAFewScreensOfAHugeDocument) {
  const auto document = [](std::size_t wordsInParagraph, bool isTable) {
    Writer writer;
    TextAttributes bold;
    bold.font.isBold = true;
    for (std::uint32_t i = 0; i < 200'000; ++i) {
      writer.write("word ", i % 2 ? bold : TextAttributes());
      if (isTable && i % 5 < 4) {
        writer.cell("", {0, i / 5, i % 5});
      } else if (isTable) {
        writer.cell("", {0, i / 5, 4}, true);
      } else if (i % wordsInParagraph == 0) {
        writer.end();
      }
    }
    return writer.take();
  };
  for (const auto& text : {document(8, false), document(1'000'000, false), document(8, true)}) {
    std::size_t before = view.laidOutBytes();
    const auto endTurn = [&](const char* what) {
      QApplication::processEvents();
      EXPECT_LE(view.laidOutBytes() - before, 40'000U) << what;
      before = view.laidOutBytes();
    };
    view.setAttributedText(text);
    endTurn("set");
    QScrollBar& bar = *view.verticalScrollBar();
    bar.setSliderPosition(bar.maximum() / 2);
    endTurn("half way");
    EXPECT_NEAR(static_cast<double>(view.visibleRange().begin), 0.5 * static_cast<double>(view.text().size()),
                20'000);
    bar.setSliderPosition(bar.maximum());
    endTurn("end");
    EXPECT_EQ(view.visibleRange().end, view.text().size());
    widget().resize(view.width() == 500 ? 450 : 500, 400);
    endTurn("resized");
  }
}

TEST_F(RichTextViewTest, aScreenReaderReadsTheTextAndHowItLooks) {
  TextAttributes strong;
  strong.font = {"", 20, true, true};
  strong.underline = LineStyle::single;
  view.setAttributedText(Writer().write("plain ").write("strong", strong).write(" end").take());
  EXPECT_EQ(QAccessible::queryAccessibleInterface(&view)->role(), QAccessible::EditableText);
  EXPECT_EQ(text().text(0, text().characterCount()), "plain strong end");
  int start = 0;
  int end = 0;
  const QString look = text().attributes(8, &start, &end);
  EXPECT_TRUE(start == 6 && end == 12);
  for (const char* each :
       {"font-weight:bold", "font-style:italic", "font-size:20pt", "text-underline-type:single"})
    EXPECT_TRUE(look.contains(each)) << look.toStdString();
}

}  // namespace
}  // namespace tarnix::qt
