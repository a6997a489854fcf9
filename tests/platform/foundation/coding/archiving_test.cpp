#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "platform/foundation/coding/json_coding.h"
#include "platform/foundation/coding/keyed_archiver.h"

namespace tarnix {
namespace {

struct Note {
  String text;
  std::vector<double> marks;
  std::optional<int> page;

  static String className() { return "Note"; }
  void encodeWithCoder(NSCoder& coder) const {
    coder.encode("text", text);
    coder.encode("marks", marks);
    if (page) coder.encode("page", *page);
  }
  static std::optional<Note> initWithCoder(const NSCoder& coder) {
    auto text = coder.decode<String>("text");
    auto marks = coder.decode<std::vector<double>>("marks");
    if (!text || !marks) return std::nullopt;
    return Note{*text, *marks, coder.decode<int>("page")};
  }
  bool operator==(const Note&) const = default;
};

// Has the same values under another name.
struct OtherNote : Note {
  static String className() { return "OtherNote"; }
  static std::optional<OtherNote> initWithCoder(const NSCoder& coder) {
    auto note = Note::initWithCoder(coder);
    return note ? std::optional(OtherNote{*note}) : std::nullopt;
  }
};

static_assert(IsNSSecureCoding<Note> && !IsNSSecureCoding<String> && !IsNSSecureCoding<int>);

PropertyList::Data bytesOf(std::string_view text) { return {text.begin(), text.end()}; }

std::optional<Note> unarchived(const PropertyList::Data& data) {
  return NSKeyedUnarchiver::unarchivedObject<Note>(data);
}

TEST(KeyedArchiver, objectsComeBackFromTheirArchives) {
  for (const Note& note : {Note{"a\xC3\xA4\n", {0.1, -0.5}, 3}, Note{}}) {
    const auto data = NSKeyedArchiver::archivedDataWithRootObject(note, true);
    ASSERT_TRUE(data);
    EXPECT_EQ(unarchived(*data), note);
    EXPECT_FALSE(NSKeyedUnarchiver::unarchivedObject<OtherNote>(*data));
  }
}

TEST(KeyedArchiver, archivesNothingByHalves) {
  EXPECT_FALSE(NSKeyedArchiver::archivedDataWithRootObject(Note{"a", {1, std::nan("")}, {}}, true));
  EXPECT_FALSE(NSKeyedArchiver::archivedDataWithRootObject(Note{"\xFF", {}, {}}, true));
}

TEST(KeyedUnarchiver, readsEveryBytesWithoutHarm) {
  const auto whole = *NSKeyedArchiver::archivedDataWithRootObject(Note{"text", {1.5}, 2}, true);
  for (std::size_t size = 0; size < whole.size(); ++size) {
    EXPECT_FALSE(unarchived({whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)})) << size;
  }
  for (std::size_t position = 0; position < whole.size(); ++position) {
    auto damaged = whole;
    damaged[position] = 0xFF;
    EXPECT_FALSE(unarchived(damaged)) << position;
  }
}

TEST(KeyedUnarchiver, refusesOtherFormatsVersionsAndUnfitValues) {
  struct {
    const char* json;
    bool isReadable;
  } const cases[] = {
      {R"({"format":"tarnix.keyed-archive","version":1,"class":"Note","values":{"text":"t","marks":[]}})",
       true},
      {R"({"format":"tarnix.keyed-archive","version":2,"class":"Note","values":{"text":"t","marks":[]}})",
       false},
      {R"({"format":"another","version":1,"class":"Note","values":{"text":"t","marks":[]}})", false},
      {R"({"version":1,"class":"Note","values":{"text":"t","marks":[]}})", false},
      {R"({"format":"tarnix.keyed-archive","version":1,"class":"Note","values":{"text":"t"}})", false},
      {R"({"format":"tarnix.keyed-archive","version":1,"class":"Note","values":{"text":1,"marks":[]}})",
       false},
      {R"({"format":"tarnix.keyed-archive","version":1,"class":"Note","values":[]})", false},
      {R"([])", false},
  };
  for (const auto& [json, isReadable] : cases) {
    EXPECT_EQ(unarchived(bytesOf(json)).has_value(), isReadable) << json;
  }
}

}  // namespace
}  // namespace tarnix
