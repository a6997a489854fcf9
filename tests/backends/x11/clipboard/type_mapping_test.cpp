#include "backends/x11/clipboard/type_mapping.h"

#include <gmock/gmock.h>

#include <bitset>
#include <map>
#include <string>

namespace tarnix::x11 {
namespace {

using ::testing::ElementsAre;

std::vector<std::string> typesOf(const std::vector<String>& targets,
                                 const TypeMapping::Findings& findings = {}) {
  const auto list = TypeMapping().typesOf(targets, findings);
  std::vector<std::string> names;
  for (const auto& type : *list) names.push_back(type.rawValue.str());
  return names;
}

// Reads the identifier bit by bit, unlike the writer.
std::string tagIn(const String& identifier) {
  constexpr std::string_view kAlphabet = "abcdefghkmnpqrstuvwxyz0123456789";
  std::string bits;
  for (const char letter : identifier.view().substr(5))
    bits += std::bitset<5>(kAlphabet.find(letter)).to_string();
  std::string bytes;
  for (std::size_t at = 0; at + 8 <= bits.size(); at += 8) {
    bytes += static_cast<char>(std::bitset<8>(bits.substr(at, 8)).to_ulong());
  }
  EXPECT_EQ(bits.substr(bytes.size() * 8).find('1'), std::string::npos) << identifier.view();
  EXPECT_LT(bits.size() - bytes.size() * 8, 5U);
  return bytes;
}

TEST(TypeMapping, ordersTypesFromRichToPlainAndDropsQuestions) {
  EXPECT_THAT(
      typesOf({"TIMESTAMP", "STRING", "TARGETS", "UTF8_STRING", "image/png", "text/html", "SAVE_TARGETS",
               "application/rtf", "text/rtf", "DELETE", "text/x-moz-url", "application/pdf", "MULTIPLE"}),
      ElementsAre("public.url", "public.rtf", "public.html", "public.png", "com.adobe.pdf",
                  "public.utf8-plain-text"));
  EXPECT_THAT(typesOf({"TARGETS", "MULTIPLE"}), ElementsAre());
}

TEST(TypeMapping, tellsFilesFromLinksByWhatTheListHolds) {
  const std::vector<String> targets{"text/plain", "text/uri-list", "x-special/gnome-copied-files"};
  EXPECT_THAT(typesOf(targets), ElementsAre("public.file-url", "public.utf8-plain-text"));
  EXPECT_THAT(typesOf(targets, {.areFilesKnown = true, .hasOtherUris = true}),
              ElementsAre("public.url", "public.utf8-plain-text"));
  EXPECT_THAT(typesOf(targets, {.areFilesKnown = true, .hasPaths = true, .hasOtherUris = true}),
              ElementsAre("public.file-url", "public.url", "public.utf8-plain-text"));
  EXPECT_THAT(typesOf(targets, {.areFilesKnown = true}), ElementsAre("public.utf8-plain-text"));
  EXPECT_THAT(typesOf({"text/unicode", "INCR"}, {.hasText = true}),
              ElementsAre("public.utf16-plain-text", "public.utf8-plain-text"));
  EXPECT_THAT(typesOf({"text/plain;charset=UTF-16LE"}), ElementsAre("text/plain;charset=UTF-16LE"));
}

TEST(TypeMapping, carriesUnknownNamesInDynamicIdentifiers) {
  EXPECT_EQ(dynamicIdentifier("Foo"), "dyn.ah62d4rv4gu8yq55t");
  const std::map<std::string, std::string> tags{
      {"chromium/x-source-url", "chromium/x-source-url"},
      {"a=b:c?", "a%3Db%3Ac%3F"},
      {"50%", "50%25"},
      {"A", "%41"},
      {"AB", "AB"},
      {"G", "G"},
      {"caf\xC3\xA9", "caf\xC3\xA9"},
      {"caf\xE9", "caf%E9"},
      {"tab\there", "tab%09here"},
  };
  for (const auto& [name, tag] : tags) EXPECT_EQ(tagIn(dynamicIdentifier(name)), "?0=6:4=" + tag);
  EXPECT_THAT(typesOf({"UTF8_STRING", "Foo"}),
              ElementsAre("public.utf8-plain-text", "dyn.ah62d4rv4gu8yq55t"));
}

TEST(TypeMapping, sharesEqualListsAndForgetsOldOnes) {
  TypeMapping mapping;
  const std::vector<String> text{"UTF8_STRING"};
  const std::vector<String> rich{"UTF8_STRING", "text/rtf"};
  const auto first = mapping.typesOf(text, {});
  const auto second = mapping.typesOf(rich, {});
  EXPECT_EQ(mapping.typesOf(text, {}), first);
  EXPECT_EQ(mapping.typesOf(rich, {}), second);
  EXPECT_TRUE(first->at(0).rawValue.sharesBytesWith(second->at(1).rawValue));
  for (int count = 0; count < 5000; ++count) {
    const std::vector<String> odd{String("odd " + std::to_string(count))};
    ASSERT_EQ(mapping.typesOf(odd, {})->size(), 1U);
  }
  EXPECT_EQ(first.use_count(), 1);
}

}  // namespace
}  // namespace tarnix::x11
