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

}  // namespace
}  // namespace tarnix
