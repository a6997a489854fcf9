#include "history/title_search.h"

#include <gtest/gtest.h>

#include <string>

namespace tarnix {
namespace {

TEST(TitleSearch, findsWhatIsSpelledOtherwise) {
  struct Case {
    const char* sought;
    const char* title;
    bool isFound;
  };
  const Case cases[] = {
      {"caf\u00E9", "the cafe\u0301 at noon", true},                   // Composed, and decomposed.
      {"cafe\u0301", "the caf\u00E9 at noon", true},                   //
      {"\u212B", "10 \u00C5", true},                                   // A sign for the letter, the letter,
      {"A\u030A", "10 \u212B", true},                                  // and the letter with its ring.
      {"\uD55C\uAE00", "\u1112\u1161\u11AB\u1100\u1173\u11AF", true},  // Hangul by syllables and by letters.
      {"\u1112\u1161\u11AB", "\uD55C\uAE00", true},                    //
      {"\uD558", "\u1112\u1161\u11AB", false},       // Another syllable, which begins as this one does.
      {"Vi\u1EC7t", "Vie\u0323\u0302t", true},       // Two marks, in either order,
      {"Vie\u0302\u0323t", "Vi\u1EC7t", true},       //
      {"Vi\u1EC7t", "Vi\u00EA\u0323t Nam", true},    // and in neither normal form.
      {"\u00E9 \u00E8", "caf\u00E9 e\u0300", true},  // A title that mixes the forms.
      {"\u212A", "1000 K", true},                    // Equivalent to a letter of ASCII.
      {"e", "cafe\u0301", true},                     // Byte by byte, as ever.
      {"\u0301", "cafe\u0301", true},                //
      {"e", "caf\u00E9", false},                     //
      {"\u00C9", "caf\u00E9", false},                // Case is told apart,
      {"\uFB01", "fi", false},                       // and compatible is not equivalent.
      {"\xFF\u00E9",
       "a\xFF"
       "e\u0301",
       true},  // What is no UTF-8 is told apart too.
      {"\xFE\u00E9",
       "a\xFF"
       "e\u0301",
       false},
      {"\xC3", "\u00E9", true},
  };
  for (const auto& [sought, title, isFound] : cases) {
    EXPECT_EQ(TitleSearch(sought).isIn(title), isFound) << '"' << sought << "\" in \"" << title << '"';
  }
}

TEST(TitleSearch, knowsBothFormsInTitlesOfAnySize) {
  std::string title(3'000'000, 'x');
  for (const char* spelled : {"\u00E9", "e\u0301"}) {
    title.replace(title.size() - 3, 3, spelled);
    EXPECT_TRUE(TitleSearch("\u00E9").isIn(title)) << spelled;
    EXPECT_TRUE(TitleSearch("e\u0301").isIn(title)) << spelled;
    EXPECT_FALSE(TitleSearch("\u00E8").isIn(title)) << spelled;
  }
}

}  // namespace
}  // namespace tarnix
