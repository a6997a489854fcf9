#include "backends/x11/clipboard/uri_list.h"

#include <gtest/gtest.h>

#include <string>

namespace tarnix::x11 {
namespace {

using namespace std::string_view_literals;

std::string pathOf(std::string_view uri) { return localPath(uri).value_or("(none)").str(); }

TEST(UriList, namesLocalFilesOnly) {
  EXPECT_EQ(pathOf("file:///tmp/a%20b"), "/tmp/a b");
  EXPECT_EQ(pathOf("FILE://LocalHost/x"), "/x");
  EXPECT_EQ(pathOf("file:/etc/hosts"), "/etc/hosts");
  EXPECT_EQ(pathOf("file:///caf%C3%a9"), "/café");
  EXPECT_EQ(pathOf("file://server/share"), "(none)");
  EXPECT_EQ(pathOf("file:relative"), "(none)");
  EXPECT_EQ(pathOf("https://example.org/"), "(none)");
  EXPECT_EQ(pathOf("file:///a\0b"sv), "(none)");
  EXPECT_EQ(pathOf(""), "(none)");
}

TEST(UriList, neverInventsASlashOrAnEnd) {
  EXPECT_EQ(pathOf("file:///a%2Fb%2fc%00d"), "/a%2Fb%2fc%00d");
  EXPECT_EQ(pathOf("file:///100%"), "/100%");
  EXPECT_EQ(pathOf("file:///%zz%4"), "/%zz%4");
  EXPECT_EQ(pathOf("file:///%252F"), "/%2F");
}

// Cut at every place, since increments end anywhere.
UriList read(UriListReader::Form form, std::string_view bytes) {
  std::vector<UriList> lists;
  for (std::size_t size = 1; size <= bytes.size(); ++size) {
    UriListReader reader(form);
    for (std::size_t at = 0; at < bytes.size(); at += size) reader.append(bytes.substr(at, size));
    lists.push_back(reader.finish());
    EXPECT_EQ(lists.back(), lists.front()) << "in pieces of " << size;
  }
  return lists.front();
}
UriList parseUriList(std::string_view bytes) { return read(UriListReader::Form::uriList, bytes); }
UriList parseCopiedFiles(std::string_view bytes) { return read(UriListReader::Form::copiedFiles, bytes); }

TEST(UriList, readsLinesOfAllKinds) {
  EXPECT_EQ(parseUriList("# remark\r\nfile:///a\r\n\r\nfile:///b \nhttp://c/\r\n"),
            (UriList{.paths = {"/a", "/b"}, .hasOthers = true}));
  EXPECT_EQ(parseUriList("file:///last"), (UriList{.paths = {"/last"}, .hasOthers = false}));
  EXPECT_EQ(parseUriList("# nothing"), UriList{});
  EXPECT_EQ(parseCopiedFiles("cut\nfile:///a\nfile:///b"),
            (UriList{.paths = {"/a", "/b"}, .hasOthers = false}));
  EXPECT_EQ(parseCopiedFiles("file:///a"), UriList{});
}

}  // namespace
}  // namespace tarnix::x11
