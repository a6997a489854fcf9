#include "history/substring_search.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace tarnix {
namespace {

// Texts of few letters, so that near misses abound, around the size of the blocks that the search looks at.
TEST(SubstringSearch, agreesWithTheStandardLibrary) {
  std::mt19937 random(7);
  for (int round = 0; round < 20'000; ++round) {
    const auto text = [&](std::size_t most) {
      std::string result(random() % (most + 1), ' ');
      for (char& c : result) c = "ab\xC3 "[random() % 4];
      return result;
    };
    const std::string haystack = text(400);
    const std::string needle = text(round % 2 == 0 ? 5 : 12);
    ASSERT_EQ(SubstringSearch(needle).isIn(haystack), haystack.find(needle) != std::string::npos)
        << '"' << needle << "\" in \"" << haystack << '"';
  }
}

TEST(SubstringSearch, findsTextAtBothEndsOfBlocksAndTells) {
  for (std::size_t size = 2; size < 300; ++size) {
    for (const std::size_t place : {std::size_t{0}, size / 2, size - 2}) {
      std::string text(size, 'x');
      text.replace(place, 2, "pq");
      EXPECT_TRUE(SubstringSearch("pq").isIn(text)) << size << " at " << place;
      EXPECT_FALSE(SubstringSearch("qp").isIn(text));
      EXPECT_FALSE(SubstringSearch("PQ").isIn(text)) << "case is told apart";
    }
  }
  EXPECT_TRUE(SubstringSearch("").isIn(""));
  EXPECT_FALSE(SubstringSearch("a").isIn(""));
  EXPECT_TRUE(SubstringSearch(std::string_view("\0a", 2)).isIn(std::string_view("b\0a", 3)));
}

}  // namespace
}  // namespace tarnix
