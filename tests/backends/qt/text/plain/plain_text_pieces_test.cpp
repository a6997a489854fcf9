#include "backends/qt/text/plain/plain_text_pieces.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "backends/qt/text/plain/plain_text_decoding.h"
#include "backends/qt/text/plain/plain_text_drawn.h"
#include "backends/qt/text/plain/plain_text_index.h"

namespace tarnix::qt {
namespace {

using ::testing::ElementsAre;

std::string repeated(std::string_view unit, std::size_t count) {
  std::string text;
  while (count-- > 0) text += unit;
  return text;
}

// Any mixture of breaks, short and endless lines, well and ill-formed bytes.
std::string randomText(unsigned seed, std::size_t units) {
  static const std::vector<std::string> kUnits{"a",
                                               " ",
                                               "\n",
                                               "\r",
                                               "\r\n",
                                               "\t",
                                               "é",
                                               "\u0301",
                                               "日",
                                               "😀",
                                               "\xFF",
                                               "\x80",
                                               "\xE2\x82",
                                               "\xF0\x9F",
                                               "\u202E",
                                               "\u200D",
                                               "a long word without an end "};
  std::mt19937 random(seed);
  std::string text;
  while (units > 0) {
    const std::string& unit = kUnits[random() % kUnits.size()];
    const std::size_t run = random() % 40 == 0 ? 4000 : 1;
    text += repeated(unit, run);
    units -= std::min(units, run);
  }
  return text;
}

std::vector<TextPiece> piecesOf(std::string_view text) {
  std::vector<TextPiece> pieces{pieceAt(text, 0)};
  while (pieces.back().next <= text.size()) pieces.push_back(pieceAt(text, pieces.back().next));
  return pieces;
}

std::vector<std::string> shownIn(std::string_view text) {
  std::vector<std::string> parts;
  for (const TextPiece& piece : piecesOf(text))
    parts.emplace_back(text.substr(piece.begin, piece.end - piece.begin));
  return parts;
}

TEST(TextPieces, linesEndAtEveryKindOfBreak) {
  EXPECT_THAT(shownIn(""), ElementsAre(""));
  EXPECT_THAT(shownIn("a"), ElementsAre("a"));
  EXPECT_THAT(shownIn("a\nb\r\nc\rd"), ElementsAre("a", "b", "c", "d"));
  EXPECT_THAT(shownIn("\n\r\r\n\n"), ElementsAre("", "", "", "", ""));
}

TEST(TextPieces, anyPlaceFindsThePieceThatAWalkFromTheStartFinds) {
  for (unsigned seed = 1; seed <= 6; ++seed) {
    const std::string text = randomText(seed, 20000);
    std::size_t offset = 0;
    for (const TextPiece& piece : piecesOf(text)) {
      ASSERT_EQ(piece.begin, offset);
      ASSERT_LE(piece.end - piece.begin, 3 * kPieceBytes) << "seed " << seed;
      for (; offset < std::min(piece.next, text.size()); ++offset) {
        ASSERT_EQ(pieceAt(text, offset), piece) << "seed " << seed << " offset " << offset;
      }
    }
    ASSERT_EQ(offset, text.size());
  }
}

TEST(TextPieces, ordinaryLinesAreWholeAndLongOnesAreCutWhereItShowsLeast) {
  const std::string before = repeated("x\n", 1000);
  EXPECT_EQ(shownIn(before + repeated("word ", 1600)).back().size(), 5 * 1600u);
  for (const std::string& part : shownIn(before + repeated("word ", 100000))) {
    EXPECT_TRUE(part == "x" || part.ends_with(' '));
  }
  for (const std::string& part : shownIn(repeated("e\u0301\u0302", 20000)))
    EXPECT_TRUE(part.starts_with('e'));
  for (const std::string& part : shownIn(repeated("日", 20000))) EXPECT_EQ(part.size() % 3, 0u);
}

TEST(TextPieces, theLineAroundAPlaceHasItsBreakAndAnyLength) {
  const std::string longLine = repeated("y", 300000);
  const std::string text = "one\r\n" + longLine + "\rlast";
  EXPECT_EQ(lineAround(text, 2), (TextRange{0, 5}));
  EXPECT_EQ(lineAround(text, 4), (TextRange{0, 5}));
  EXPECT_EQ(lineAround(text, 5), (TextRange{5, 300006}));
  EXPECT_EQ(lineAround(text, 200000), (TextRange{5, 300006}));
  EXPECT_EQ(lineAround(text, text.size()), (TextRange{300006, text.size()}));
}

TEST(TextDecoding, illFormedBytesAreReplacedByMaximalSubparts) {
  const std::pair<std::string, QString> cases[] = {
      {"a\xFF z", u"a\uFFFD z"_qs},
      {"\xC3(", u"\uFFFD("_qs},
      {"\xE2\x82", u"\uFFFD"_qs},
      {"\xE2\x82\xE2\x82\xAC", u"\uFFFD\u20AC"_qs},
      {"\xF0\x9F\x98 ", u"\uFFFD "_qs},
      {"\xC0\xAF", u"\uFFFD\uFFFD"_qs},
      {"\xE0\x80\x80", u"\uFFFD\uFFFD\uFFFD"_qs},
      {"\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD"_qs},
      {"\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD"_qs},
      {"\xF0\x9F\x98\x80", u"😀"_qs},
  };
  for (const auto& [bytes, expected] : cases)
    EXPECT_EQ(decoded(bytes), expected) << ::testing::PrintToString(bytes);
}

TEST(TextDecoding, theStartOfACodePointIsFoundFromEachOfItsBytes) {
  const std::string text = randomText(7, 3000);
  for (std::size_t start = 0; start < text.size();) {
    const std::size_t length = codePointAt(text, start).length;
    for (std::size_t i = 0; i < length; ++i) ASSERT_EQ(codePointStart(text, start + i), start);
    start += length;
  }
}

TEST(DrawnText, whatWouldBeInvisibleOrReorderIsNamed) {
  EXPECT_EQ(drawn(std::string_view("\0\x1B[31m\x7F\t", 8), Qt::gray).text, u"[NUL][ESC][31m[DEL]\t"_qs);
  EXPECT_EQ(drawn("\u0085a\u202Egpj\u202C", Qt::gray).text, u"[85]a[RLO]gpj[PDF]"_qs);
  EXPECT_EQ(drawn("\u0645\u200C\u0646 👩\u200D👧", Qt::gray).text, u"\u0645\u200C\u0646 👩\u200D👧"_qs);
}

TEST(DrawnText, aFloodOfMarksBecomesTheirNumber) {
  const DrawnText flood = drawn("Z" + repeated("\u0351", 1030) + "e\u0301", Qt::gray);
  EXPECT_TRUE(flood.text.endsWith(u"\u0351[+1000]e\u0301"_qs));
  EXPECT_EQ(flood.text.size(), 1 + 30 + 7 + 2);
  EXPECT_EQ(flood.offsets[31], 1 + 30 * 2u) << "the number stands for the first mark left out";
}

TEST(DrawnText, aFloodOfControlsIsColouredInFewParts) {
  EXPECT_EQ(drawn(repeated("\x01", 2000), Qt::gray).formats.size(), 1);
  EXPECT_LE(drawn(repeated("\x01 x", 2000), Qt::gray).formats.size(), 100);
}

TEST(Utf16Index, positionsAgreeWithTheWholeTextDecoded) {
  const std::string text = randomText(8, 150000);
  Utf16Index index{String(text)};
  while (!index.isComplete()) index.advance();
  EXPECT_EQ(index.countedUnits(), static_cast<std::size_t>(decoded(text).size()));
  std::size_t units = 0;
  for (std::size_t offset = 0, step = 0; offset < text.size(); ++step) {
    const CodePoint point = codePointAt(text, offset);
    if (step % 1999 == 0 || offset % Utf16Index::kBlockBytes < 8) {
      ASSERT_EQ(index.unitsBefore(offset), units);
      ASSERT_EQ(index.unitsBefore(offset + point.length - 1), units);
      ASSERT_EQ(index.offsetAt(units), offset);
      ASSERT_EQ(index.offsetAt(units + utf16Length(point.value) - 1), offset);
    }
    units += utf16Length(point.value);
    offset += point.length;
  }
}

TEST(Utf16Index, growsBySlicesAndIsExactAboutTheCountedPart) {
  const std::string text = repeated("日本語 text\n", 400000);
  Utf16Index index{String(text)};
  std::size_t slices = 0;
  for (std::size_t before = 0; !index.isComplete(); before = index.countedBytes(), ++slices) {
    index.advance();
    ASSERT_LE(index.countedBytes() - before, Utf16Index::kBytesPerSlice + Utf16Index::kBlockBytes);
    ASSERT_EQ(index.unitsBefore(text.size()), index.countedUnits());
    ASSERT_EQ(index.offsetAt(index.countedUnits() + 1000), index.countedBytes());
  }
  EXPECT_LE(slices, text.size() / Utf16Index::kBytesPerSlice + 1);
  EXPECT_LT(index.memoryBytes(), text.size() / 1000);
}

}  // namespace
}  // namespace tarnix::qt
