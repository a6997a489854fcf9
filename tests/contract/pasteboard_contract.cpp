#include "contract/pasteboard_contract.h"

#include <gmock/gmock.h>

#include <chrono>
#include <utility>

namespace tarnix::test {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(PasteboardContract);

std::vector<std::string> PasteboardContract::typesOf(const NSPasteboardItem& item) {
  std::vector<std::string> names;
  for (const auto& type : item.types()) names.push_back(type.rawValue.str());
  return names;
}

TEST_P(PasteboardContract, everyCopyIsANewGeneration) {
  ASSERT_TRUE(stage->copyElsewhere({.text = "same"}));
  const int count = pasteboard().changeCount();
  const Items first = items();
  ASSERT_EQ(first.size(), 1U);
  EXPECT_EQ(first, items()) << "two readings give the same objects";
  EXPECT_EQ(pasteboard().changeCount(), count) << "reading changes nothing";

  ASSERT_TRUE(stage->copyElsewhere({.text = "same"}));
  EXPECT_GT(pasteboard().changeCount(), count);
  EXPECT_NE(first, items()) << "an equal copy is another generation";
  ASSERT_TRUE(stage->copyElsewhere({.text = "other"}));
  EXPECT_EQ(first[0]->stringForType(NSPasteboardTypeString), String("same"))
      << "items outlive their generation";
  EXPECT_EQ(items()[0]->stringForType(NSPasteboardTypeString), String("other"));
}

TEST_P(PasteboardContract, onlyWhatIsOfferedIsThere) {
  ASSERT_TRUE(stage->copyElsewhere({.text = "plain", .rtf = "{\\rtf1 rich}", .source = "org.example.app"}));
  ASSERT_EQ(items().size(), 1U);
  EXPECT_THAT(typesOf(*items()[0]), ::testing::IsSupersetOf({"public.rtf", "public.utf8-plain-text"}));
  EXPECT_EQ(items()[0]->stringForType(NSPasteboardTypeRTF), String("{\\rtf1 rich}"));
  EXPECT_EQ(pasteboard().stringForType(NSPasteboard::sourceType()), String("org.example.app"));
  EXPECT_FALSE(pasteboard().stringForType({"public.file-url"}).has_value());
  EXPECT_FALSE(items()[0]->stringForType({"PUBLIC.RTF"}).has_value()) << "names are compared exactly";

  ASSERT_TRUE(stage->copyElsewhere({.text = "plain"}));
  EXPECT_FALSE(pasteboard().stringForType(NSPasteboardTypeRTF).has_value());
  EXPECT_FALSE(pasteboard().stringForType(NSPasteboard::sourceType()).has_value());
}

TEST_P(PasteboardContract, eachFileIsAnItemWithItsPlainPath) {
  ASSERT_TRUE(stage->copyElsewhere({.files = {"/tmp/a b.txt", "/tmp/\xC3\xA4#%.txt", "/tmp/c"}}));
  std::vector<std::string> paths;
  for (const auto& item : items()) {
    if (const auto path = item->stringForType({"public.file-url"})) paths.push_back(path->str());
  }
  EXPECT_THAT(paths, ElementsAre("/tmp/a b.txt", "/tmp/\xC3\xA4#%.txt", "/tmp/c"));
  EXPECT_EQ(items().size(), 3U);
}

TEST_P(PasteboardContract, anEmptiedPasteboardHasNoItems) {
  ASSERT_TRUE(stage->copyElsewhere({.text = "something"}));
  const int count = pasteboard().changeCount();
  ASSERT_TRUE(stage->emptyElsewhere());
  EXPECT_GT(pasteboard().changeCount(), count);
  EXPECT_THAT(items(), IsEmpty());
  EXPECT_FALSE(pasteboard().stringForType(NSPasteboardTypeString).has_value());
}

TEST_P(PasteboardContract, whatIsWrittenHereIsOneGenerationUntilSomebodyElseCopies) {
  ASSERT_TRUE(stage->copyElsewhere({.text = "theirs"}));
  const int before = pasteboard().changeCount();
  const int count = pasteboard().clearContents();
  EXPECT_GT(count, before);
  EXPECT_THAT(items(), IsEmpty());
  EXPECT_TRUE(pasteboard().setString("ours", NSPasteboardTypeString));
  EXPECT_TRUE(pasteboard().setString("{\\rtf1 ours}", NSPasteboardTypeRTF));
  stage->settle();
  EXPECT_EQ(pasteboard().changeCount(), count);
  ASSERT_EQ(items().size(), 1U);
  EXPECT_EQ(items()[0]->stringForType(NSPasteboardTypeString), String("ours"));
  EXPECT_EQ(pasteboard().stringForType(NSPasteboardTypeRTF), String("{\\rtf1 ours}"));

  ASSERT_TRUE(stage->copyElsewhere({.text = "theirs again"}));
  EXPECT_FALSE(pasteboard().setString("too late", NSPasteboardTypeString));
  EXPECT_EQ(pasteboard().stringForType(NSPasteboardTypeString), String("theirs again"));
}

TEST_P(PasteboardContract, everyChangeReleasesThePolls) {
  int seen = pasteboard().changeCount();
  int ticksWithNews = 0;
  const auto poll = stage->runLoop().scheduleTimer(1ms, {.tolerance = 1ms}, [&] {
    if (std::exchange(seen, pasteboard().changeCount()) != seen) ++ticksWithNews;
  });
  ASSERT_TRUE(stage->copyElsewhere({.text = "one"}));
  stage->settle();
  EXPECT_EQ(ticksWithNews, 1);
  pasteboard().clearContents();
  stage->settle();
  EXPECT_EQ(ticksWithNews, 2);
}

}  // namespace tarnix::test
