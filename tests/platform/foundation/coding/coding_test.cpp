#include "platform/foundation/coding/coding.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <set>
#include <string>
#include <unordered_map>

#include "platform/foundation/coding/base64.h"
#include "platform/foundation/coding/json_coding.h"

namespace tarnix {
namespace {

struct Point {
  int x = 0;
  double y = 0;
  std::optional<String> name;

  static constexpr auto codingKeys() {
    return std::tuple{CodingKey{"x", &Point::x}, CodingKey{"y", &Point::y}, CodingKey{"name", &Point::name}};
  }
  bool operator==(const Point&) const = default;
};

struct Tree {
  Point root;
  std::vector<Tree> branches;

  static constexpr auto codingKeys() {
    return std::tuple{CodingKey{"root", &Tree::root}, CodingKey{"branches", &Tree::branches}};
  }
  bool operator==(const Tree&) const = default;
};

struct NoCodable {};
static_assert(IsCodable<std::map<String, std::vector<std::optional<Tree>>>>);
static_assert(!IsCodable<NoCodable> && !IsCodable<std::vector<NoCodable>>);
static_assert(!Encodable<std::optional<NoCodable>> && !Decodable<std::map<String, std::set<NoCodable>>>);
static_assert(!IsCodable<std::map<int, int>> && !IsCodable<char>);

template <typename T>
std::string jsonOf(const T& value) {
  const auto result = JSONEncoder().encode(value);
  if (!result) return "error: " + result.error().description.str();
  return {result->begin(), result->end()};
}

template <typename T>
std::optional<T> fromJSON(std::string_view json) {
  return JSONDecoder().decode<T>(json);
}

template <typename T>
void expectToComeBack(const T& value) {
  const std::optional<T> back = fromJSON<T>(jsonOf(value));
  ASSERT_TRUE(back.has_value()) << jsonOf(value);
  EXPECT_EQ(*back, value) << jsonOf(value);
}

TEST(Coding, everyKindOfValueComesBackFromJSON) {
  expectToComeBack(true);
  expectToComeBack(std::string("text"));
  expectToComeBack(INT64_MIN);
  expectToComeBack(UINT64_MAX);
  expectToComeBack(std::int8_t{-128});
  expectToComeBack(String("\"a\\b\"\n\xC3\xA4\xF0\x9F\x8C\x8D\x01/"));
  expectToComeBack(String(std::string_view("\0x", 2)));
  expectToComeBack(PropertyList::Data{0, 255, 16, 7});
  expectToComeBack(Date{Date::Interval{721692800.123456}});
  expectToComeBack(UUID::random());
  expectToComeBack(URL("/a b/"));
  expectToComeBack(std::optional<int>());
  expectToComeBack(std::vector<bool>{true, false});
  expectToComeBack(std::vector<std::optional<int>>{1, std::nullopt});
  expectToComeBack(std::set<String>{"b", "a"});
  expectToComeBack(std::unordered_set<int>{3, 1, 2});
  expectToComeBack(std::map<String, double>{{"", 0.5}, {"k", -1}});
  expectToComeBack(std::unordered_map<String, std::vector<int>>{{"k", {1, 2}}});
  expectToComeBack(Tree{{1, 0.1, "a"}, {{{2, 3, {}}, {}}, {}}});
}

TEST(Coding, realsComeBackAsTheSameValue) {
  for (const double value : {0.1, 1.0, -0.0, 1e22, 5e-324, 1.7976931348623157e308, 1.0 / 3}) {
    expectToComeBack(value);
    EXPECT_EQ(std::signbit(*fromJSON<double>(jsonOf(value))), std::signbit(value));
  }
  for (const float value : {0.1F, 16777216.0F, std::numeric_limits<float>::max(), 1e-45F}) {
    expectToComeBack(value);
  }
  const auto infinite = Codable<float>::encode(std::numeric_limits<float>::infinity());
  EXPECT_EQ(Codable<float>::decode(infinite), std::numeric_limits<float>::infinity());
}

TEST(Coding, numbersAreReadWhereTheTypeHasThem) {
  EXPECT_EQ(fromJSON<int>("1.0"), 1);
  EXPECT_EQ(fromJSON<int>("1.5"), std::nullopt);
  EXPECT_EQ(fromJSON<std::uint8_t>("300"), std::nullopt);
  EXPECT_EQ(fromJSON<unsigned>("-1"), std::nullopt);
  EXPECT_EQ(fromJSON<std::int64_t>("9223372036854775808"), std::nullopt);
  EXPECT_EQ(fromJSON<double>("3"), 3.0);
  EXPECT_EQ(fromJSON<double>("9007199254740993"), 9007199254740992.0);
  EXPECT_EQ(fromJSON<float>("0.1"), 0.1F);
  EXPECT_EQ(fromJSON<float>("1e39"), std::nullopt);
}

TEST(Coding, aRecordNeedsAllItsKeysButTheOptionalOnes) {
  EXPECT_EQ(jsonOf(Point{1, 2, {}}), R"({"name":null,"x":1,"y":2.0})");
  EXPECT_EQ(fromJSON<Point>(R"({"z":[],"y":2,"x":1})"), (Point{1, 2, {}}));
  EXPECT_EQ(fromJSON<Point>(R"({"x":1,"y":2,"name":"n"})"), (Point{1, 2, "n"}));
  EXPECT_EQ(fromJSON<Point>(R"({"x":1})"), std::nullopt);
  EXPECT_EQ(fromJSON<Point>(R"({"x":1,"y":null})"), std::nullopt);
  EXPECT_EQ(fromJSON<Point>(R"({"x":1,"y":2,"name":3})"), std::nullopt);
}

TEST(JSONEncoder, namesThePlaceOfWhatItCannotWrite) {
  const double nan = std::nan("");
  EXPECT_EQ(jsonOf(nan), "error: the number is not finite");
  EXPECT_EQ(jsonOf(String("\xFF")), "error: the text is not UTF-8");
  EXPECT_EQ(jsonOf(std::map<String, std::vector<Point>>{{"x", {{}, {}, {0, 0, "\xED\xA0\x80"}}}}),
            "error: x[2].name: the text is not UTF-8");
  EXPECT_EQ(jsonOf(std::map<String, double>{{"a\nb", nan}}), R"(error: ["a\nb"]: the number is not finite)");
  EXPECT_EQ(jsonOf(std::map<String, int>{{"\xFF", 1}}), R"(error: ["\ufffd"]: the text is not UTF-8)");
  EXPECT_EQ(jsonOf(std::vector<std::vector<double>>{{0}, {0, -INFINITY}}),
            "error: [1][1]: the number is not finite");
}

TEST(JSONEncoder, writesKeysInOrder) {
  const JSONEncoder encoder{JSONEncoder::OutputFormatting::sortedKeys};
  const auto result = encoder.encode(std::unordered_map<String, int>{{"b", 1}, {"c", 2}, {"a", 3}, {"B", 4}});
  ASSERT_TRUE(result);
  EXPECT_EQ(std::string(result->begin(), result->end()), R"({"B":4,"a":3,"b":1,"c":2})");
}

TEST(JSONDecoder, refusesWhatIsNotOneWholeJSONText) {
  for (const char* json : {"",       " ",   "tru", "[1",    "[1,]",   R"({"a"})",  R"({"a":1)", "{a:1}",
                           "'a'",    "\"a", "1 2", "[1]]",  "true x", "\"\xFF\"",  "\"\xC3\"",  R"("\ud800")",
                           "\"\n\"", "01",  ".5",  "1e999", "NaN",    "-Infinity", "// c\n1"}) {
    EXPECT_EQ(fromJSON<CodedValue>(json), std::nullopt) << json;
  }
  EXPECT_EQ(fromJSON<CodedValue>(std::string_view("1\0 2", 4)), std::nullopt);
}

TEST(JSONDecoder, takesSingleValuesBlanksAndRepeatedKeys) {
  EXPECT_EQ(fromJSON<bool>(" true\n"), true);
  EXPECT_EQ(fromJSON<String>("\"\\u00e4\\ud83c\\udf0d\""), "\xC3\xA4\xF0\x9F\x8C\x8D");
  EXPECT_EQ(JSONDecoder().decode<int>(PropertyList::Data{'4', '2'}), 42);
  EXPECT_EQ((fromJSON<std::map<String, int>>(R"({"a":1,"a":2})")), (std::map<String, int>{{"a", 2}}));
  const auto deep = fromJSON<CodedValue>(R"([{"a":[1,{"b":null}],"c":-1},18446744073709551615,[]])");
  ASSERT_TRUE(deep);
  EXPECT_EQ(jsonOf(*deep), R"([{"a":[1,{"b":null}],"c":-1},18446744073709551615,[]])");
}

// What nests without an end must neither be read nor written, and costs no stack.
TEST(JSONCoding, isLimitedInDepthBothWays) {
  const auto nested = [](std::size_t depth) { return std::string(depth, '[') + std::string(depth, ']'); };
  const auto deepest = fromJSON<CodedValue>(nested(512));
  ASSERT_TRUE(deepest);
  EXPECT_EQ(jsonOf(*deepest), nested(512));
  EXPECT_TRUE(jsonOf(std::vector{*deepest}).ends_with("[0]: the value is nested too deep"));
  EXPECT_EQ(fromJSON<CodedValue>(nested(513)), std::nullopt);
  EXPECT_EQ(fromJSON<CodedValue>(nested(1'000'000)), std::nullopt);
  std::string objects;
  for (int i = 0; i < 100'000; ++i) objects += R"({"a":)";
  EXPECT_EQ(fromJSON<CodedValue>(objects), std::nullopt);
}

TEST(Base64, followsTheTestVectorsOfRFC4648) {
  const std::pair<const char*, const char*> vectors[] = {{"", ""},
                                                         {"f", "Zg=="},
                                                         {"fo", "Zm8="},
                                                         {"foo", "Zm9v"},
                                                         {"foob", "Zm9vYg=="},
                                                         {"fooba", "Zm9vYmE="},
                                                         {"foobar", "Zm9vYmFy"},
                                                         {"\xFB\xFF", "+/8="}};
  for (const auto& [plain, encoded] : vectors) {
    const std::string_view text = plain;
    const PropertyList::Data bytes(text.begin(), text.end());
    EXPECT_EQ(base64Encoded(bytes), encoded);
    EXPECT_EQ(base64Decoded(encoded), bytes) << encoded;
  }
  for (const char* text :
       {"Zg", "Zg=", "Z===", "====", "Zg==Zg==", "Zm9v\n", "Zm9-", "Zh==", "Zm9=", "=Zm9"}) {
    EXPECT_EQ(base64Decoded(text), std::nullopt) << text;
  }
}

}  // namespace
}  // namespace tarnix
