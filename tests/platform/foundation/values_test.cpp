#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <unordered_set>
#include <utility>

#include "platform/foundation/url.h"
#include "platform/foundation/ut_type.h"
#include "platform/foundation/uuid.h"

namespace tarnix {
namespace {

TEST(UUID, randomOnesAreOfVersionFourAndDiffer) {
  std::unordered_set<UUID> seen;
  for (int i = 0; i < 500; ++i) {
    const UUID id = UUID::random();
    EXPECT_EQ(id.bytes[6] >> 4, 4);
    EXPECT_EQ(id.bytes[8] >> 6, 2);
    EXPECT_TRUE(seen.insert(id).second);
  }
}

TEST(UUID, readsNothingElse) {
  for (const char* text : {"", "00112233-4455-6677-8899-AABBCCDDEEF", "00112233-4455-6677-8899-AABBCCDDEEFF0",
                           "001122334-455-6677-8899-AABBCCDDEEFF", "00112233-4455-6677-8899-AABBCCDDEEFG",
                           "0011223344556677-8899-AABBCCDDEEFF--", "{0112233-4455-6677-8899-AABBCCDDEEF}",
                           "00112233-4455-6677-8899-AABBCCDD-EFF"}) {
    EXPECT_EQ(UUID::fromString(text), std::nullopt) << text;
  }
}

TEST(URL, aHintOutweighsTheTrailingSlash) {
  EXPECT_FALSE(URL("/a/", URL::DirectoryHint::notDirectory).hasDirectoryPath());
  EXPECT_TRUE(URL("/a", URL::DirectoryHint::isDirectory).hasDirectoryPath());
  EXPECT_EQ(URL("/a", URL::DirectoryHint::isDirectory), URL("/a/"));
  EXPECT_NE(URL("/a"), URL("/a/"));
}

TEST(URL, joinsARelativePathToItsBase) {
  const auto joined = [](const char* path, const char* base) {
    return URL(path, URL::DirectoryHint::inferFromPath, URL(base)).path();
  };
  EXPECT_EQ(joined("b/c/", "/a"), "/a/b/c");
  EXPECT_EQ(joined("b", "/"), "/b");
  EXPECT_EQ(joined("/b", "/a"), "/b");
  EXPECT_EQ(joined("", "/a"), "/a");
}

TEST(URL, deletesTheExtensionOfTheLastComponentOnly) {
  struct {
    const char* path;
    const char* without;
  } const cases[] = {
      {"/a/b.tar.gz", "/a/b.tar"},
      {"/a/.profile", "/a/.profile"},
      {"/a/.profile.bak", "/a/.profile"},
      {"/a.d/b", "/a.d/b"},
      {"/a/b.", "/a/b."},
      {"/a/..", "/a/.."},
      {"/", "/"},
      {"", ""},
      {"b.txt", "b"},
  };
  for (const auto& [path, without] : cases) EXPECT_EQ(URL(path).deletingPathExtension().path(), without);
  EXPECT_EQ(URL("/Apps/Editor.app/").deletingPathExtension(), URL("/Apps/Editor/"));
}

TEST(URL, readsNoFileFromElsewhereOrWithHiddenSeparators) {
  for (const char* text : {"file://host/a", "file://", "file:///a%00b", "file:///a%2Fb", "file:///a%2fb",
                           "file:///a?b", "file:///a#b", "file:///a%2", "file:///a%zz", "file:///a%+1"}) {
    EXPECT_EQ(URL::fromString(text), std::nullopt) << text;
  }
}

TEST(URL, otherAbsoluteOnesKeepTheirText) {
  const std::tuple<const char*, const char*, const char*> cases[] = {
      {"https://example.org/a%20b?c#d", "/a%20b", "a%20b"},
      {"HTTPS://u@[::1]:80/a/?x=/y", "/a", "a"},
      {"http://example.org", "", ""},
      {"mailto:a@example.org", "a@example.org", "a@example.org"},
      {"x-a.b+1:", "", ""},
  };
  for (const auto& [text, path, last] : cases) {
    const auto url = URL::fromString(text);
    ASSERT_TRUE(url) << text;
    EXPECT_FALSE(url->isFileURL()) << text;
    EXPECT_EQ(url->absoluteString(), text);
    EXPECT_EQ(url->path(), path);
    EXPECT_EQ(url->lastPathComponent(), last);
    EXPECT_NE(*url, URL(path)) << text;
  }
  EXPECT_NE(URL::fromString("https://a/b"), URL::fromString("https://c/b"));
  EXPECT_EQ(URL::fromString("https://a/b.d/c.html?q=1.2")->deletingPathExtension(),
            URL::fromString("https://a/b.d/c?q=1.2"));
  EXPECT_EQ(URL::fromString("https://a/b.d/#c.d")->deletingPathExtension(),
            URL::fromString("https://a/b/#c.d"));
}

TEST(URL, readsNoRelativeAndNoMalformedText) {
  for (const char* text : {"", "a", "/a", "//a/b", "?a:b", ":a", "1a:b", "a b:c", "\xC3\xA4:b", "http://a b",
                           "http://a/\xC3\xA4", "http://a/<b>", "http://a/\n", "http://a/%", "http://a/%4"}) {
    EXPECT_EQ(URL::fromString(text), std::nullopt) << text;
  }
}

TEST(UTType, isNamedByWellFormedIdentifiersOnly) {
  EXPECT_EQ(UTType::named("public.file-url"), UTType{"public.file-url"});
  EXPECT_TRUE(UTType::named("dyn.ah62d4rv4gu8yq55t"));
  for (const char* identifier : {"", "text/plain", "UTF8_STRING", "a b", "public.\xC3\xA4"}) {
    EXPECT_FALSE(UTType::named(identifier)) << identifier;
  }
}

}  // namespace
}  // namespace tarnix
