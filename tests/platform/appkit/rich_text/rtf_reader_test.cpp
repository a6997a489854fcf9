#include "platform/appkit/rich_text/rtf/rtf_reader.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "platform/appkit/rich_text/text/plain_text.h"

namespace tarnix {
namespace {

std::string readText(const std::string& rtf) {
  const auto text = attributedStringFromRtf(rtf);
  return text ? plainTextOf(*text).str() : "(no RTF)";
}

std::string repeated(const std::string& piece, int count) {
  std::string text;
  while (count-- > 0) text += piece;
  return text;
}

TEST(RtfReader, showsDamagedDocumentsAsFarAsTheyGo) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"", "(no RTF)"},
      {"{\\rt", "(no RTF)"},
      {" \xEF\xBB\xBF{\\rtf1 a}", "(no RTF)"},
      {"\xEF\xBB\xBF \r\n{\\rtf1 a}b{\\b c}", "a"},
      {"{\\rtf1", ""},
      {"{\\rtf1 a\\", "a"},
      {"{\\rtf1 a\\'e", "a"},
      {"{\\rtf1 a\\'zzb}", "azzb"},
      {"{\\rtf1 a\\u", "a"},
      {"{\\rtf1 a\\u99999999 ?b}", "a\uFFFDb"},
      {"{\\rtf1 a\\bin99999999 b}", "a"},
      {"{\\rtf1 a\\bin-5 b}", "ab"},
      {"{\\rtf1 a{b{c}d", "abcd"},
      {"{\\rtf1 \\cell\\row\\nestcell\\nestrow a}", "\n\na"},
      {"{\\rtf1{\\field{\\*\\fldinst HYPERLINK}{\\fldrslt a}} b}", "a b"},
      {"{\\rtf1\\ansicpg77777\\f9\\cf9\\s9\\ls9 a}", "a"},
      {"{\\rtf1{\\fonttbl{\\f0\\fcharset128 A;}}\\f0 a\\'83}b", "a\uFFFD"},
  };
  for (const auto& [rtf, text] : cases) EXPECT_EQ(readText(rtf), text) << rtf;
}

TEST(RtfReader, isBoundedInDepthTablesAndNumbers) {
  EXPECT_EQ(readText("{\\rtf1 " + repeated("{", 1'000'000) + "deep" + repeated("}", 1'000'000) + " out}"),
            "deep out");
  EXPECT_EQ(readText("{\\rtf1\\itap2000000000\\intbl a\\nestcell b}").find("a"), 0U);
  EXPECT_EQ(readText("{\\rtf1{\\fonttbl" + repeated("{\\f7 x;}", 100'000) + "}{\\colortbl" +
                     repeated(";", 100'000) + "}\\fs2147483647\\li-2147483648\\sl2147483647\\slmult1 a}"),
            "a");
  const std::string counted =
      "{\\rtf1{\\*\\listtable{\\list{\\listlevel\\levelnfc0\\levelstartat2147483647{\\leveltext\\'02\\'00.;}}"
      "\\listid1}}"
      "{\\*\\listoverridetable{\\listoverride\\listid1\\ls1}}";
  EXPECT_EQ(readText(counted + "\\pard\\ls1 a\\par b}"), "1000000.\ta\n1000001.\tb");
}

TEST(RtfReader, readsTheSameInSlices) {
  const String rtf(
      "{\\rtf1\\ansicpg932{\\colortbl;\\red255\\green0\\blue0;}\\pard\\qc some {\\b\\cf1 "
      "bold}\\par\\'93\\'fa\\'96{ "
      "\\u-10179?\\u-8704?\\trowd\\cellx100\\intbl a\\cell b\\cell\\row\\pard{\\listtext 1.\\tab}\\ls1 "
      "item}");
  const auto whole = attributedStringFromRtf(rtf);
  ASSERT_TRUE(whole.has_value());
  for (const std::size_t size : {1U, 2U, 3U, 50U}) {
    auto reader = RtfReader::create(rtf);
    ASSERT_TRUE(reader.has_value());
    std::size_t turns = 1;
    while (reader->advance(size)) ++turns;
    EXPECT_EQ(reader->take(), *whole);
    EXPECT_GE(turns, 2U);
  }
}

// Each paragraph of a table as "column+columns x rows".
std::vector<std::string> cellsOf(const std::string& rows) {
  std::vector<std::string> cells;
  const NSAttributedString text = attributedStringFromRtf("{\\rtf1 " + rows + "}").value();
  for (const auto& paragraph : text.paragraphs()) {
    const TableCell* const cell = text.cellOf(paragraph);
    cells.push_back(cell == nullptr ? "none"
                                    : std::to_string(cell->column) + "+" + std::to_string(cell->columnSpan) +
                                          " x " + std::to_string(cell->rowSpan));
  }
  return cells;
}

// Programs say that a cell spans columns by its edge alone, or by cells that are merged.
TEST(RtfReader, putsCellsIntoTheColumnsThatTheEdgesOfAllRowsMake) {
  const std::string three = "\\trowd\\cellx1000\\cellx2000\\cellx3000 a\\cell b\\cell c\\cell\\row";
  const std::vector<std::string> columns = {"0+1 x 1", "1+1 x 1", "2+1 x 1"};
  const auto with = [&](std::vector<std::string> cells) {
    cells.insert(cells.begin(), columns.begin(), columns.end());
    return cells;
  };
  EXPECT_EQ(cellsOf(three + three.substr(6)), with(columns));
  EXPECT_EQ(cellsOf(three + "\\trowd\\cellx2010\\cellx3000 wide\\cell c\\cell\\row"),
            with({"0+2 x 1", "2+1 x 1"}));
  EXPECT_EQ(cellsOf(three + "\\trowd\\trleft1000\\cellx3000 wide\\cell\\row"), with({"1+2 x 1"}));
  EXPECT_EQ(
      cellsOf(three + "\\trowd\\clmgf\\cellx1000\\clmrg\\cellx2000\\cellx3000 wide\\cell\\cell c\\cell\\row"),
      with({"0+2 x 1", "2+1 x 1"}));
  EXPECT_EQ(cellsOf("\\trowd\\cellx1500 narrow\\cell\\row" + three.substr(0)),
            (std::vector<std::string>{"0+2 x 1", "0+1 x 1", "1+2 x 1", "3+1 x 1"}));
}

TEST(RtfReader, letsCellsReachDownAsFarAsTheyGoOn) {
  const std::string first = "\\trowd\\clvmgf\\cellx1000\\cellx2000 high\\cell b\\cell\\row";
  const std::string next = "\\trowd\\clvmrg\\cellx1000\\cellx2000\\cell b\\cell\\row";
  EXPECT_EQ(cellsOf(first + next + next),
            (std::vector<std::string>{"0+1 x 3", "1+1 x 1", "1+1 x 1", "1+1 x 1"}));
  const std::string full = "\\trowd\\clvmrg\\cellx1000\\cellx2000 own\\cell b\\cell\\row";
  EXPECT_EQ(cellsOf(first + full), (std::vector<std::string>{"0+1 x 1", "1+1 x 1", "0+1 x 1", "1+1 x 1"}));
  EXPECT_EQ(cellsOf(next), (std::vector<std::string>{"1+1 x 1"})) << "nothing stands above";
}

TEST(RtfReader, leavesCellsInTheirOrderWhereEdgesMakeNoSense) {
  const std::string cells = " a\\cell b\\cell\\row";
  const std::vector<std::string> inOrder = {"0+1 x 1", "1+1 x 1"};
  EXPECT_EQ(cellsOf("\\trowd" + cells), inOrder);
  EXPECT_EQ(cellsOf("\\intbl" + cells + "\\trowd\\cellx1000\\cellx3000" + cells +
                    "\\trowd\\cellx3000 wide\\cell\\row"),
            (std::vector<std::string>{"0+1 x 1", "1+1 x 1", "0+1 x 1", "1+1 x 1", "0+2 x 1"}))
      << "rows that tell nothing count as well";
  EXPECT_EQ(cellsOf("\\trowd\\cellx2000\\cellx1000" + cells), inOrder);
  EXPECT_EQ(cellsOf("\\trowd\\cellx-2147483648\\cellx2147483647" + cells), inOrder);
  EXPECT_EQ(cellsOf("\\trowd\\cellx5\\cellx9" + cells), inOrder) << "narrower than any column";
  EXPECT_EQ(cellsOf("\\trowd\\clmrg\\clvmrg\\cellx10\\clmrg\\cellx5" + cells),
            (std::vector<std::string>{"0+2 x 1", "1+1 x 1"}))
      << "what is covered keeps its text";
  std::string many = "\\trowd";
  for (int i = 1; i < 3000; ++i) many += "\\cellx" + std::to_string(i * 100);
  EXPECT_EQ(cellsOf(many + cells + "\\trowd\\cellx100\\cellx200" + cells),
            (std::vector<std::string>{"0+1 x 1", "1+1 x 1", "0+1 x 1", "1+1 x 1"}));
}

}  // namespace
}  // namespace tarnix
