#include "previewer/protocol/messages.h"

#include <gtest/gtest.h>

namespace tarnix::previewing {
namespace {

TEST(PreviewMessages, arriveAsTheyWereSent) {
  const std::vector<Entry> entries{{Entry::Kind::folder, true, 0, ".git"},
                                   {Entry::Kind::file, false, 1ULL << 40, "ü"}};
  const auto read = entriesFrom(payloadOf(entries));
  ASSERT_TRUE(read && read->size() == 2);
  EXPECT_TRUE((*read)[0].isHidden && (*read)[0].kind == Entry::Kind::folder);
  EXPECT_EQ((*read)[1].bytes, 1ULL << 40);
  EXPECT_EQ((*read)[1].name, "ü");
  const auto information =
      informationFrom(payloadOf(Information{std::string(5000, 'k'), "icon", "generic", 7, -1, std::nullopt}));
  ASSERT_TRUE(information);
  EXPECT_EQ(information->kind.size(), kMostNameBytes);
  EXPECT_EQ(information->modified, -1);
  EXPECT_EQ(information->created, std::nullopt);
  const auto document = documentFrom(payloadOf(Document{9, {{595, 842}, {100, 50}}}));
  ASSERT_TRUE(document);
  EXPECT_EQ(document->pages, 9U);
  EXPECT_EQ(document->sizes[1], (std::pair<float, float>(100, 50)));
  EXPECT_EQ(openRequestFrom(payloadOf(OpenRequest{1, 2, 100, "/a"}))->path, "/a");
  const std::string payload = headOf(Text{2, 9, {}}) + "ab";
  const auto text = textFrom(payload);
  EXPECT_TRUE(text && text->utf8 == "ab" && text->fileBytes == 9);
}

// A message cut anywhere, or with more behind it, is none; reading it touches nothing outside.
TEST(PreviewMessages, areTakenWholeOrNotAtAll) {
  const std::string entry = payloadOf(std::vector<Entry>{{Entry::Kind::file, false, 1, "name"}});
  const std::string information = payloadOf(Information{"kind", "icon", "generic", 7, 1, 2});
  for (std::size_t size = 1; size < entry.size(); ++size)
    EXPECT_FALSE(entriesFrom(entry.substr(0, size))) << size;
  for (std::size_t size = 0; size < information.size(); ++size)
    EXPECT_FALSE(informationFrom(information.substr(0, size))) << size;
  EXPECT_FALSE(informationFrom(information + "x"));
  EXPECT_FALSE(refusalFrom(payloadOf(Refusal{}) + "x"));
}

TEST(PreviewMessages, thatSayWhatNoneMayAreNone) {
  EXPECT_FALSE(refusalFrom(payloadOf(Refusal{static_cast<Reason>(kReasons)})));
  EXPECT_FALSE(imageFrom(headOf(Image{1, 1, 0, 5, {}})));
  EXPECT_FALSE(imageFrom(headOf(Image{1, 1, 1, 1, {}}) + "123"));
  EXPECT_FALSE(imageFrom(headOf(Image{1, 1, 0x10000, 0x10000, {}})));
  EXPECT_TRUE(imageFrom(headOf(Image{1, 1, 1, 1, {}}) + "1234"));
  EXPECT_FALSE(pageRequestFrom(payloadOf(PageRequest{0, 0x10001, 0xffff})));
  EXPECT_FALSE(documentFrom(payloadOf(Document{0, {}})));
  EXPECT_FALSE(documentFrom(payloadOf(Document{1, {{1, 1}, {1, 1}}}))) << "more sizes than pages";
  EXPECT_FALSE(documentFrom(payloadOf(Document{1, {{0, 1}}})));
  EXPECT_FALSE(documentFrom(payloadOf(Document{1, {{std::numeric_limits<float>::infinity(), 1}}})));
  EXPECT_FALSE(folderFrom(payloadOf(Folder{kMostEntries + 1, false})));
  EXPECT_FALSE(informationFrom(payloadOf(Information{"kind", "/etc/icon.png", "", 1, {}, {}})));
  EXPECT_FALSE(
      entriesFrom(payloadOf(std::vector<Entry>{{static_cast<Entry::Kind>(kEntryKinds), false, 1, "a"}})));
  EXPECT_FALSE(textFrom(headOf(Text{9, 2, {}})));
  EXPECT_EQ(mostBytes(static_cast<MessageKind>(99)), 0U);
}

}  // namespace
}  // namespace tarnix::previewing
