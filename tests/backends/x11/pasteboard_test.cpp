#include "backends/x11/pasteboard.h"

#include <gmock/gmock.h>

#include "backends/x11/desktop.h"

namespace tarnix::x11 {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;

class PasteboardReading : public testing::Desktop {};

TEST_F(PasteboardReading, showsWhatOtherProgramsCopy) {
  EXPECT_EQ(pasteboard->changeCount(), 0);
  EXPECT_TRUE(items().empty());

  ASSERT_TRUE(copyText("Grüße \xF0\x9F\x8C\x8D"));
  EXPECT_EQ(text(), "Grüße \xF0\x9F\x8C\x8D");
  EXPECT_THAT(types(), ElementsAre("public.utf8-plain-text"));
  const auto first = items();
  EXPECT_EQ(first, items());

  ASSERT_TRUE(copy({"xsel", "-b", "-i"}, "from another program"));
  EXPECT_EQ(text(), "from another program");
  EXPECT_NE(first, items());
  EXPECT_EQ(first[0]->stringForType(NSPasteboardTypeString), "Grüße \xF0\x9F\x8C\x8D");

  ASSERT_TRUE(copy({"xsel", "-b", "-c"}));
  EXPECT_TRUE(items().empty());
  EXPECT_EQ(text(), "(no text)");
}

TEST_F(PasteboardReading, knowsWhatWasCopiedBeforeTheStart) {
  ASSERT_TRUE(copyText("early"));
  session.reset();
  pasteboard.reset();
  open();
  EXPECT_EQ(text(), "early");
  EXPECT_EQ(pasteboard->changeCount(), 1);
}

TEST_F(PasteboardReading, takesLargeTextsInIncrements) {
  std::string large;
  while (large.size() < 5'000'000) large += "line " + std::to_string(large.size()) + " \xE2\x82\xAC\n";
  ASSERT_TRUE(copyText(large));
  EXPECT_TRUE(text() == large);
}

}  // namespace
}  // namespace tarnix::x11
