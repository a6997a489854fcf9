#include "capture/pasteboard.h"

#include <gmock/gmock.h>

#include <string>

#include "backends/simulated/desktop.h"

namespace tarnix {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using Names = std::vector<String>;

Pasteboard::Item itemWith(const Names& types) {
  simulated::ItemContent content;
  for (const auto& type : types) content.emplace_back(type, std::nullopt);
  return {std::make_shared<simulated::PasteboardItem>(content)};
}

Names filtered(const Names& types) {
  Names names;
  for (const auto& type : itemWith(types).filteredTypes()) names.push_back(type.rawValue);
  return names;
}

TEST(PasteboardItem, hidesTypesThatOnlyRepeatOthers) {
  const struct {
    Names types;
    Names kept;
  } cases[] = {
      {{}, {}},
      {{"public.utf8-plain-text", "NSStringPboardType", "public.rtf"},
       {"public.utf8-plain-text", "public.rtf"}},
      {{"NSStringPboardType", "public.rtf", "public.utf8-plain-text"},
       {"public.rtf", "public.utf8-plain-text"}},
      {{"NSStringPboardType"}, {"NSStringPboardType"}},
      {{"CorePasteboardFlavorType 0x75743136", "CorePasteboardFlavorType", "corePasteboardFlavorType"},
       {"corePasteboardFlavorType"}},
      {{"Apple URL pasteboard type", "public.file-url"}, {"public.file-url"}},
      {{"Apple URL pasteboard type", "public.url"}, {"public.url"}},
      {{"Apple URL pasteboard type", "public.png"}, {"Apple URL pasteboard type", "public.png"}},
      {{"NSFilenamesPboardType", "public.url"}, {"NSFilenamesPboardType", "public.url"}},
      {{"dyn.a", "nsstringpboardtype", "public.utf8-plain-text"},
       {"dyn.a", "nsstringpboardtype", "public.utf8-plain-text"}},
  };
  for (const auto& [types, kept] : cases) EXPECT_EQ(filtered(types), kept);
}

TEST(PasteboardItem, pairsItsTypesWithItself) {
  const auto item = itemWith({"public.rtf", "NSStringPboardType", "public.utf8-plain-text"});
  const auto types = item.types();
  EXPECT_THAT(types, ElementsAre(Pasteboard::Type_{item, {"public.rtf"}},
                                 Pasteboard::Type_{item, {"public.utf8-plain-text"}}));
  EXPECT_EQ(types[0].id(), std::to_string(item.id()) + "-public.rtf");

  const Pasteboard::Type_ elsewhere{itemWith({"public.rtf"}), {"public.rtf"}};
  const std::hash<Pasteboard::Type_> hash;
  EXPECT_EQ(types, item.types());
  EXPECT_NE(types[0], elsewhere);
  EXPECT_NE(hash(types[0]), hash(elsewhere));
  EXPECT_NE(hash(types[0]), hash(types[1]));
}

}  // namespace
}  // namespace tarnix
