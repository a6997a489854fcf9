#include "platform/appkit/attributed_string.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "platform/appkit/rich_text/text/code_page.h"

namespace tarnix {
namespace {

TextAttributes bold() {
  TextAttributes attributes;
  attributes.font.isBold = true;
  return attributes;
}

TextAttributes linked() {
  TextAttributes attributes;
  attributes.link = "there";
  return attributes;
}

std::string decoded(const std::optional<CodePage>& page, std::string_view bytes) {
  std::string text;
  if (page) page->decode(bytes, text);
  return page ? text : "unknown";
}

TEST(NSAttributedString, aPlainTextIsOneRunAndAParagraphForEachLine) {
  const NSAttributedString text(String("a\n\nb"));
  ASSERT_EQ(text.runs().size(), 1U);
  EXPECT_EQ(text.runs()[0].end, 4U);
  std::vector<std::uint32_t> ends;
  for (const auto& paragraph : text.paragraphs()) ends.push_back(paragraph.end);
  EXPECT_EQ(ends, (std::vector<std::uint32_t>{2, 3, 4}));
  EXPECT_EQ(text.styles().size(), 1U);
  EXPECT_EQ(NSAttributedString(String("\n")).paragraphs().size(), 1U);
}

TEST(NSAttributedString, nothingHasNeitherRunsNorParagraphs) {
  AttributedStringBuilder builder;
  builder.append("", bold());
  builder.endText(builder.add(ParagraphStyle()));
  const NSAttributedString text = builder.take();
  EXPECT_TRUE(text.runs().empty());
  EXPECT_TRUE(text.paragraphs().empty());
  EXPECT_EQ(text, NSAttributedString());
  EXPECT_EQ(NSAttributedString(String()), NSAttributedString());
}

TEST(AttributedStringBuilder, neighboursInTheSameAttributesAreOneRun) {
  AttributedStringBuilder builder;
  builder.append("a", bold());
  builder.append("", linked());
  builder.append("b", bold());
  builder.endParagraph('\n', builder.add(bold()), builder.add(ParagraphStyle()));
  builder.append("c", linked());
  const NSAttributedString text = builder.take();
  ASSERT_EQ(text.runs().size(), 2U);
  EXPECT_EQ(text.runs()[0].end, 3U);
  EXPECT_EQ(text.attributesOf(text.runs()[1]), linked());
}

// What was added but not used, and in which order, must not tell texts apart.
TEST(AttributedStringBuilder, keepsWhatIsUsedInTheOrderOfItsUse) {
  ParagraphStyle heading;
  heading.headingLevel = 1;
  const auto build = [&](bool isReversed) {
    AttributedStringBuilder builder;
    if (isReversed) {
      builder.add(TextAttributes());
      builder.add(linked());
      builder.add(ParagraphStyle());
    }
    builder.append("a", bold());
    builder.endParagraph('\t', builder.add(linked()), builder.add(heading));
    builder.append("b", linked());
    return builder.take();
  };
  const NSAttributedString text = build(false);
  EXPECT_EQ(text, build(true));
  EXPECT_EQ(text.attributes().size(), 2U);
  EXPECT_EQ(text.attributes()[0], bold());
  EXPECT_EQ(text.styleOf(text.paragraphs()[0]), heading);
  EXPECT_EQ(text.styleOf(text.paragraphs()[1]), ParagraphStyle()) << "The end of a text that nobody ended.";
  EXPECT_NE(text, NSAttributedString(text.string()));
}

TEST(AttributedStringBuilder, isEmptyAgainOnceItIsTaken) {
  AttributedStringBuilder builder;
  builder.append("a", bold());
  EXPECT_FALSE(builder.isParagraphEmpty());
  builder.take();
  EXPECT_TRUE(builder.isParagraphEmpty());
  builder.append("b", linked());
  const NSAttributedString text = builder.take();
  EXPECT_EQ(text.string(), "b");
  EXPECT_EQ(text.attributes().size(), 1U);
}

TEST(CodePage, decodesByTheNumbersOfWindows) {
  struct Case {
    int number;
    std::string_view bytes;
    const char* text;
  };
  for (const Case& each : {Case{1252, "\x80\xE9\x93", "€é“"},
                           {1251, "\xCF\xF0", "Пр"},
                           {874, "\xA1", "ก"},
                           {932, "\x83\x5C\x93\xFA\xB1", "ソ日ｱ"},
                           {936, "\xD6\xD0\x80", "中€"},
                           {949, "\xB0\xA1", "가"},
                           {950, "\xA4\xA4", "中"},
                           {437, "\xE3", "π"},
                           {10000, "\x8E\xD2", "é“"},
                           {65001, "\xF0\x9F\x98\x80", "😀"}}) {
    EXPECT_EQ(decoded(CodePage::numbered(each.number), each.bytes), each.text) << each.number;
  }
  for (const int number : {-1, 0, 42, 1361, 99999}) EXPECT_FALSE(CodePage::numbered(number)) << number;
}

TEST(CodePage, readsTheLabelsOfTheWebAsBrowsersDo) {
  EXPECT_EQ(decoded(CodePage::labelled("ISO-8859-1"), "\x80"), "€");
  EXPECT_EQ(decoded(CodePage::labelled("Shift_JIS"), "\x87\x40"), "①");
  EXPECT_EQ(decoded(CodePage::labelled("gb2312"), "\x81\x40"), "丂");
  EXPECT_EQ(decoded(CodePage::labelled("utf-16le"), std::string_view("a\0=\xD8\0\xDE", 6)), "a😀");
  for (const char* label : {"", "no such thing"}) EXPECT_FALSE(CodePage::labelled(label)) << label;
}

TEST(CodePage, whatIsNoCharacterIsReplaced) {
  EXPECT_EQ(decoded(CodePage::numbered(65001), "a\xFF\xE2\x82"), "a\uFFFD\uFFFD");
  EXPECT_EQ(decoded(CodePage::numbered(932), "a\x83"), "a\uFFFD");
}

// Long texts are converted in pieces; a character of two units may lie on the border of two.
TEST(CodePage, aLongTextHasNoSeams) {
  const auto page = CodePage::numbered(65001);
  for (std::size_t before = 500; before < 520; ++before) {
    const std::string text = std::string(before, 'x') + "😀😀é";
    EXPECT_EQ(decoded(page, text), text) << before;
  }
}

TEST(CodePage, knowsTheBytesThatBeginTwo) {
  EXPECT_TRUE(CodePage::numbered(932)->isLead(0x83));
  EXPECT_FALSE(CodePage::numbered(932)->isLead(0xB1));
  EXPECT_TRUE(CodePage::numbered(936)->isLead(0xD6));
  EXPECT_FALSE(CodePage::numbered(936)->isLead('a'));
  EXPECT_FALSE(CodePage::numbered(1252)->isLead(0xE9));
}

}  // namespace
}  // namespace tarnix
