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

}  // namespace
}  // namespace tarnix
