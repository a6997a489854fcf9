#include "platform/foundation/string.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace tarnix {
namespace {

TEST(String, copiesShareTheirBytesAndEqualTextsNeedNot) {
  const String text(std::string(1000, 'x'));
  const String copy = text;
  const String equal(std::string(1000, 'x'));
  EXPECT_TRUE(copy.sharesBytesWith(text));
  EXPECT_FALSE(equal.sharesBytesWith(text));
  EXPECT_EQ(equal, text);
  EXPECT_EQ(std::hash<String>{}(equal), std::hash<String>{}(text));
}

TEST(String, keepsZeroBytesAndOrdersByUnsignedBytes) {
  const String withZero(std::string_view("a\0b", 3));
  EXPECT_EQ(withZero.size(), 3u);
  EXPECT_NE(withZero, String("a"));
  EXPECT_LT(String("a"), withZero);
  EXPECT_LT(String("z"), String("\xC3\xA4"));
  EXPECT_EQ(String(""), String());
}

TEST(String, isCopiedAndDroppedByManyThreads) {
  const String text("shared by all");
  std::vector<std::thread> threads;
  for (int i = 0; i < 2; ++i) {
    threads.emplace_back([text] {
      for (int round = 0; round < 1000; ++round) {
        const String copy = text;
        ASSERT_TRUE(copy.sharesBytesWith(text));
      }
    });
  }
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(text, "shared by all");
}

TEST(StringBuilder, gathersPiecesWhateverWasReserved) {
  std::string expected;
  StringBuilder builder;
  builder.reserve(10);
  for (int piece = 0; piece < 300; ++piece) {
    const std::string bytes(static_cast<std::size_t>(piece % 7), static_cast<char>('a' + piece % 26));
    builder.append(bytes);
    expected += bytes;
  }
  EXPECT_EQ(builder.view(), expected);
  EXPECT_EQ(builder.take().view(), expected);
}

TEST(StringBuilder, isEmptyAfterTakingAndLeavesTheTakenTextAlone) {
  StringBuilder builder;
  builder.append("first");
  const String first = builder.take();
  EXPECT_EQ(builder.size(), 0u);
  builder.append("second");
  EXPECT_EQ(builder.take(), "second");
  EXPECT_EQ(first, "first");
  builder.reserve(100);
  EXPECT_TRUE(builder.take().empty());
}

TEST(StringBuilder, truncatesButNeverGrowsByTruncating) {
  StringBuilder builder;
  builder.append("abcdef");
  builder.truncate(3);
  builder.truncate(5);
  EXPECT_EQ(builder.view(), "abc");
  builder.append("x");
  StringBuilder moved = std::move(builder);
  EXPECT_EQ(moved.take(), "abcx");
}

}  // namespace
}  // namespace tarnix
