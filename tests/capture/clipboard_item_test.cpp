#include "capture/clipboard_item.h"

#include <gmock/gmock.h>

#include <functional>
#include <memory>

#include "backends/simulated/pasteboard.h"

namespace tarnix {
namespace {

using simulated::ItemContent;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::Not;

const NSPasteboard::ContentsInfo kInfo{UUID{{1}}, Date{Date::Interval(5)}, String("org.example.editor"),
                                       URL("/applications/editor.desktop")};

std::shared_ptr<simulated::PasteboardItem> itemOf(const ItemContent& content) {
  return std::make_shared<simulated::PasteboardItem>(content);
}

ClipboardItem capture(const ItemContent& content) { return ClipboardItem::capture({itemOf(content)}, kInfo); }

TEST(ClipboardItemType, isBuiltFromItsRawValueOnly) {
  for (const auto type :
       {ClipboardItemType::fileItem, ClipboardItemType::textItem, ClipboardItemType::unassigned}) {
    EXPECT_EQ(clipboardItemType(rawValue(type)), type);
  }
  EXPECT_EQ(clipboardItemType("doc"), ClipboardItemType::fileItem);
  EXPECT_EQ(clipboardItemType(""), ClipboardItemType::unassigned);
  EXPECT_EQ(clipboardItemType("Doc"), std::nullopt);
  EXPECT_EQ(clipboardItemType("textformat"), std::nullopt);
}

TEST(ClipboardItem, takesTitleTextAndKindFromWhatTheItemHolds) {
  struct Case {
    ItemContent content;
    String title;
    std::optional<String> text;
    std::optional<String> rtf;
    std::optional<URL> file;
  };
  const Case cases[] = {
      {{{"public.utf8-plain-text", "plain"}}, "plain", "plain", {}, {}},
      {{{"public.utf8-plain-text", ""}}, "", "", {}, {}},
      {{{"public.utf8-plain-text", {}}}, "Unknown", {}, {}, {}},
      {{}, "Unknown", {}, {}, {}},
      {{{"public.rtf", "{\\rtf1 a}"}}, "Unknown", {}, "{\\rtf1 a}", {}},
      {{{"public.rtf", "{\\rtf1 a}"}, {"public.utf8-plain-text", "a"}}, "a", "a", "{\\rtf1 a}", {}},
      {{{"public.file-url", "/tmp/a.txt"}}, "Unknown", {}, {}, URL("/tmp/a.txt")},
      {{{"public.file-url", "file:///a%20b"}}, "Unknown", {}, {}, URL("file:///a%20b")},
      {{{"public.file-url", "/a/"}, {"public.rtf", "r"}, {"public.utf8-plain-text", "a"}},
       "a",
       "a",
       "r",
       URL("/a/")},
      {{{"NSStringPboardType", "old"}, {"public.UTF8-plain-text", "b"}}, "Unknown", {}, {}, {}},
  };
  for (const auto& [content, title, text, rtf, file] : cases) {
    SCOPED_TRACE(::testing::PrintToString(content.size()) + " types, title " + title.str());
    const auto item = capture(content);
    EXPECT_EQ(item.title, title);
    EXPECT_EQ(item.possibleText, text);
    EXPECT_EQ(item.possibleRtf, rtf);
    EXPECT_EQ(item.possibleFileUrl, file);
    EXPECT_EQ(item.possibleUT, file ? UTType::named("public.file-url") : std::nullopt);
    EXPECT_EQ(item.itemType, file ? ClipboardItemType::fileItem : ClipboardItemType::textItem);
    EXPECT_EQ(item.hasRtfVariant(), !file && rtf && text);
  }
}

TEST(ClipboardItem, listsReadableNamesOfTheFilteredTypesInOrder) {
  const auto item = capture({{"dyn.ah62d4rv4gu8yq55t", {}},
                             {"NSStringPboardType", "a"},
                             {"public.utf8-plain-text", "a"},
                             {"Apple PNG pasteboard type", {}},
                             {"dyn.a", {}}});
  EXPECT_THAT(item.types, ElementsAre("Foo", "public.utf8-plain-text", "Apple PNG pasteboard type", "dyn.a"));
}

TEST(ClipboardItem, listsAPromisedFileNameButNeverReadsIt) {
  const String promised = "com.apple.pasteboard.promised-suggested-file-name";
  const auto source = itemOf({{promised, "name"}, {"public.tiff", {}}, {"public.utf8-plain-text", "a"}});
  const auto item = ClipboardItem::capture({source}, std::nullopt);
  EXPECT_THAT(item.types, Contains(promised));
  EXPECT_THAT(source->reads(), Not(Contains(promised)));
  EXPECT_THAT(source->reads(), Contains("public.tiff"));
}

TEST(ClipboardItem, takesTimeAndSourceFromTheGenerationOnly) {
  const auto source = itemOf({{"public.utf8-plain-text", "a"}});
  const auto item = ClipboardItem::capture({source}, kInfo);
  EXPECT_EQ(item.date, kInfo.created);
  EXPECT_EQ(item.sourceAppId, kInfo.sourceAppBundleIdentifier);
  EXPECT_EQ(item.sourceAppURL, kInfo.sourceAppURL);
  EXPECT_NE(item.id, kInfo.id);

  const auto seed = ClipboardItem::capture({source}, std::nullopt);
  EXPECT_FALSE(seed.date || seed.sourceAppId || seed.sourceAppURL);
}

TEST(ClipboardItem, isEqualAndHashesEquallyOnlyWhenAllFieldsAre) {
  const auto item =
      capture({{"public.file-url", "/a"}, {"public.rtf", "r"}, {"public.utf8-plain-text", "t"}});
  const std::function<void(ClipboardItem&)> changes[] = {
      [](auto& each) { each.id = UUID{{9}}; },
      [](auto& each) { each.title = "other"; },
      [](auto& each) { each.content->rawValue = itemOf({}); },
      [](auto& each) { each.content.reset(); },
      [](auto& each) { each.sourceAppId = ""; },
      [](auto& each) { each.sourceAppURL.reset(); },
      [](auto& each) { each.types.pop_back(); },
      [](auto& each) { std::swap(each.types[0], each.types[1]); },
      [](auto& each) { each.date.reset(); },
      [](auto& each) { each.itemType = ClipboardItemType::textItem; },
      [](auto& each) { each.possibleText.reset(); },
      [](auto& each) { each.possibleRtf = "other"; },
      [](auto& each) { each.possibleFileUrl = URL("/b"); },
      [](auto& each) { each.possibleUT.reset(); },
  };
  const std::hash<ClipboardItem> hash;
  EXPECT_EQ(hash(item), hash(ClipboardItem(item)));
  for (std::size_t i = 0; i < std::size(changes); ++i) {
    SCOPED_TRACE(i);
    auto changed = item;
    changes[i](changed);
    EXPECT_NE(changed, item);
    EXPECT_NE(hash(changed), hash(item));
  }
}

TEST(ClipboardItem, sharesItsBytesWithThePasteboardAndItsCopies) {
  const String text = std::string(1000, 'x');
  const String type = "public.utf8-plain-text";
  const auto item = capture({{type, text}, {"public.rtf", {}}, {"public.html", {}}});
  const auto copy = item;
  EXPECT_TRUE(item.title.sharesBytesWith(text));
  EXPECT_TRUE(copy.possibleText->sharesBytesWith(text));
  EXPECT_TRUE(item.types.front().sharesBytesWith(type));
}

}  // namespace
}  // namespace tarnix
