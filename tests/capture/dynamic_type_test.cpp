#include "capture/dynamic_type.h"

#include <gmock/gmock.h>

#include <string>

namespace tarnix {
namespace {

using ::testing::IsEmpty;
using ::testing::Pair;
using ::testing::UnorderedElementsAre;

// The identifier that holds `tags`; bits that are left over at the end are zero.
std::string identifierOf(std::string_view tags) {
  std::string identifier = "dyn.a";
  for (std::size_t bit = 0; bit < tags.size() * 8; bit += 5) {
    std::size_t digit = 0;
    for (std::size_t i = bit; i < bit + 5; ++i) {
      const auto byte = i / 8 < tags.size() ? static_cast<unsigned char>(tags[i / 8]) : 0U;
      digit = digit * 2 + (byte >> (7 - i % 8) & 1U);
    }
    identifier += dynamicTagAlphabet[digit];
  }
  return identifier;
}

TEST(DynamicType, holdsTagsUnderTheirNames) {
  EXPECT_EQ(dynamicTagDecode(dynamicTagAlphabet, "h62d4rv4gu8yq55t"), "?0=6:4=Foo");
  EXPECT_THAT(
      decodeDynamicType("dyn.ah62d4rv4gu8yq55t"),
      UnorderedElementsAre(Pair("UTTypeConformsTo", "public.data"), Pair("com.apple.nspboard-type", "Foo")));
  EXPECT_EQ(readableName({"dyn.ah62d4rv4gu8yq55t"}), "Foo");
}

TEST(DynamicType, readsTagsByTheirSeparators) {
  const struct {
    std::string tags;
    std::unordered_map<String, String> expected;
  } cases[] = {
      {"4=Foo:4=Bar", {{"com.apple.nspboard-type", "Bar"}}},
      {"a=b=c", {{"a", "b"}}},
      {"tag", {}},
      {":x:F=A", {{"public.folder", "com.apple.traditional-mac-plain-text"}}},
      {"?1=?t?xt?", {{"public.filename-extension", "txt"}}},
      {"a=G:10=f", {{"a", "G"}, {"10", "f"}}},
      {"4=", {{"com.apple.nspboard-type", ""}}},
      {"3=t\u00e4xt/\u4e16\U0001f600", {{"public.mime-type", "t\u00e4xt/\u4e16\U0001f600"}}},
  };
  for (const auto& [tags, expected] : cases)
    EXPECT_EQ(decodeDynamicType(identifierOf(tags)), expected) << tags;
}

TEST(DynamicType, isShownByItsOwnNameUnlessItStandsForAnother) {
  ::testing::internal::CaptureStdout();
  for (const String& name : {String("public.utf8-plain-text"), String("dyn"), String("dyn."), String("dyn.a"),
                             String("dyn.bh62d4rv4gu8yq55t"), String("DYN.ah62d4rv4gu8yq55t"), String(),
                             String(identifierOf("?0=6:1=txt"))}) {
    EXPECT_EQ(readableName({name}), name);
  }
  EXPECT_THAT(::testing::internal::GetCapturedStdout(), IsEmpty());
  EXPECT_EQ(nspboardName({"Foo"}), std::nullopt);
  EXPECT_EQ(nspboardName({identifierOf("4=TARGETS")})->rawValue, "TARGETS");
}

// What decoding `identifier`, which can't be read, prints.
std::string complaintAbout(const std::string& identifier) {
  ::testing::internal::CaptureStdout();
  EXPECT_THAT(decodeDynamicType(identifier), IsEmpty());
  return ::testing::internal::GetCapturedStdout();
}

TEST(DynamicType, saysOnStandardOutputWhatItCannotRead) {
  for (const std::string outsider : {"i", "j", "l", "o", "A", "=", "\u00e9"}) {
    EXPECT_EQ(complaintAbout("dyn.ah62" + outsider + "a"),
              "Found character not in alphabet: " + outsider + "\n");
  }
  EXPECT_EQ(complaintAbout("dyn.ab"), "5 leftover bits: 1\n");
  EXPECT_EQ(complaintAbout("dyn.aab"), "2 leftover bits: 1\n");
  EXPECT_EQ(complaintAbout("dyn.ah62d4rv4gu8yq55tk"), "5 leftover bits: 8\n");
}

TEST(DynamicType, ignoresZeroBitsAtTheEnd) {
  EXPECT_EQ(dynamicTagDecode(dynamicTagAlphabet, ""), "");
  EXPECT_EQ(dynamicTagDecode(dynamicTagAlphabet, "a"), "");
  EXPECT_EQ(dynamicTagDecode(dynamicTagAlphabet, "h62d4rv4gu8yq55taaa"), std::string("?0=6:4=Foo\0", 11));
}

TEST(DynamicType, isEmptyWithoutALineWhenItsBytesAreNoText) {
  for (const std::string value : {"\xff", "\x80", "\xc0\xaf", "\xe0\x80\xaf", "\xf0\x80\x80\xaf",
                                  "\xed\xa0\x80", "\xf4\x90\x80\x80", "\xe4\xb8", "\xe4\xb8:"}) {
    EXPECT_EQ(complaintAbout(identifierOf("4=" + value)), "");
  }
}

}  // namespace
}  // namespace tarnix
