#include "platform/appkit/rich_text/rtf/rtf_writer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace tarnix {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

std::string written(std::string_view text, const TextAttributes& look = {},
                    const ParagraphStyle& style = {}) {
  AttributedStringBuilder builder;
  builder.append(text, look);
  builder.endText(builder.add(style));
  return rtfFrom(builder.take()).str();
}

void appendItem(AttributedStringBuilder& builder, const char* marker, std::uint8_t level) {
  ParagraphStyle style;
  style.listLevel = level;
  style.listMarker = marker;
  const auto look = builder.add(TextAttributes());
  builder.append(std::string(marker) + "\titem", look);
  builder.endParagraph('\n', look, builder.add(style));
}

void appendCell(AttributedStringBuilder& builder, const TableCell& cell, char end) {
  const auto look = builder.add(TextAttributes());
  builder.append("x", look);
  builder.endParagraph(end, look, builder.add(ParagraphStyle()), &cell);
}

TEST(RtfWriter, allButAsciiIsWrittenAsSignedUnits) {
  EXPECT_THAT(written("a{\\}\té€\u8000😀"),
              HasSubstr("a\\{\\\\\\}\\tab\\u233?\\u8364?\\u-32768?\\u-10179?\\u-8704?"));
  // A blank that ends a word isn't part of the text.
  EXPECT_THAT(written("\t x\u2028y\fz"), HasSubstr("\\tab  x\\line y\\page z}"));
}

TEST(RtfWriter, theTargetOfALinkStaysWithinItsQuotationMarks) {
  TextAttributes look;
  look.link = "a\"b\\c}";
  EXPECT_THAT(written("x", look), HasSubstr(R"({\*\fldinst HYPERLINK "a\\"b\\\\c\}"}{\fldrslt x})"));
  look.link = "#place";
  EXPECT_THAT(written("x", look), HasSubstr(R"(HYPERLINK \\l "place")"));
}

// Word processors have a font of its own for Hebrew and the like.
TEST(RtfWriter, theFontGoesForAllScripts) {
  TextAttributes look;
  look.font = {"", 12, true, false};
  EXPECT_THAT(written("x", look), HasSubstr("\\plain\\fs24\\b x"));
  EXPECT_THAT(written("x\u05D0", look), HasSubstr("\\plain\\rtlch\\afs24\\ab\\ltrch\\fs24\\b x"));
}

TEST(RtfWriter, aFontsNameDoesNotEndItsEntry) {
  TextAttributes look;
  look.font.familyName = "A;{B";
  EXPECT_THAT(written("x", look), HasSubstr("{\\f1\\fnil\\fcharset0 A\\{B;}"));
}

TEST(RtfWriter, aListGoesOnWhileItsMarkersDo) {
  AttributedStringBuilder builder;
  for (const char* marker : {"1.", "2."}) appendItem(builder, marker, 1);
  for (const char* marker : {"h)", "i)"}) appendItem(builder, marker, 2);
  for (const char* marker : {"3.", "7.", "8."}) appendItem(builder, marker, 1);
  const std::string rtf = rtfFrom(builder.take()).str();
  EXPECT_THAT(rtf, HasSubstr("\\ls1\\ilvl0\\plain{\\listtext 1.\\tab}"));
  EXPECT_THAT(rtf, HasSubstr("\\ls1\\ilvl1{\\listtext i)\\tab}"));
  EXPECT_THAT(rtf, HasSubstr("\\ls1\\ilvl0{\\listtext 3.\\tab}"));
  EXPECT_THAT(rtf, HasSubstr("\\ls2\\ilvl0{\\listtext 7.\\tab}"));
  EXPECT_THAT(rtf, HasSubstr("\\levelnfc4\\levelnfcn4\\leveljc0\\levelfollow0\\levelstartat8{\\leveltext\\'02"
                             "\\'01);}{\\levelnumbers\\'01;}"));
  EXPECT_THAT(rtf, HasSubstr("\\levelstartat7"));
  EXPECT_THAT(rtf, Not(HasSubstr("\\ls3")));
}

TEST(RtfWriter, mergedCellsAreWrittenAsOneBoxForEachColumn) {
  AttributedStringBuilder builder;
  appendCell(builder, {.row = 0, .column = 0, .columnSpan = 2}, '\t');
  appendCell(builder, {.row = 0, .column = 2, .rowSpan = 2}, '\n');
  appendCell(builder, {.row = 1, .column = 0}, '\t');
  appendCell(builder, {.row = 1, .column = 1}, '\n');
  const std::string rtf = rtfFrom(builder.take()).str();
  EXPECT_THAT(rtf, HasSubstr("\\clmgf\\cellx3000\\clmrg\\cellx6000\\clvmgf\\cellx9000\\pard\\intbl\\plain x"
                             "\\cell\\pard\\intbl\\cell\\pard\\intbl x\\cell\\row"));
  EXPECT_THAT(rtf, HasSubstr("\\cellx3000\\cellx6000\\clvmrg\\cellx9000\\pard\\intbl x\\cell\\pard\\intbl "
                             "x\\cell\\pard\\intbl\\cell\\row"));
}

// An inner table that begins its cell comes before anything that tells of the outer one.
TEST(RtfWriter, anInnerTableStandsInTheCellThatFollowsIt) {
  AttributedStringBuilder builder;
  appendCell(builder, {.column = 0}, '\t');
  appendCell(builder, {.table = 1, .depth = 2}, '\n');
  appendCell(builder, {.column = 1}, '\n');
  EXPECT_THAT(rtfFrom(builder.take()).str(),
              HasSubstr("x\\cell\\pard\\intbl\\itap2 x\\nestcell{\\*\\nesttableprops\\trowd\\irow0\\cellx9000"
                        "\\nestrow}{\\nonesttables\\par}\n\\pard\\intbl x\\cell\\row"));
}

// Spans of damaged tables reach far, and their rows come back.
TEST(RtfWriter, aTableOfDamagedNumbersStaysSmall) {
  AttributedStringBuilder builder;
  constexpr std::uint32_t kFar = 4'000'000'000U;
  for (std::uint32_t i = 0; i < 2000; ++i) appendCell(builder, {0, i, i % 100, 65535, 65535, 1}, '\n');
  for (std::uint32_t i = 0; i < 2000; ++i) appendCell(builder, {1, 0, i, 1, 1, 1}, '\t');
  for (std::uint32_t i = 0; i < 2000; ++i)
    appendCell(builder, {1 + i % 2, 0, kFar - i, 65535, 1, 65535}, '\t');
  EXPECT_LT(rtfFrom(builder.take()).size(), 4'000'000U);
}

}  // namespace
}  // namespace tarnix
