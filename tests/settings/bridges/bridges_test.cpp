#include <limits>
#include <set>

#include "platform/foundation/coding/raw_representable.h"
#include "settings/settings_test.h"
#include "settings/store.h"

namespace tarnix {

enum class Theme { system, light, dark };
template <>
struct RawRepresentable<Theme> : RawValueTable<Theme, String> {
  static constexpr Case kCases[] = {
      {Theme::system, "system"}, {Theme::light, "light"}, {Theme::dark, "dark"}};
};

// Codable as well, and stored as JSON.
enum class Level : int { low = 1, high = 2 };
template <>
struct RawRepresentable<Level> : RawValueTable<Level, int> {
  static constexpr Case kCases[] = {{Level::low, 1}, {Level::high, 2}};
};
template <>
struct Codable<Level> : CodableByRawValue<Level> {};

// Codable as well, and stored by its raw value.
enum class Side { left, right };
template <>
struct RawRepresentable<Side> : RawValueTable<Side, String> {
  static constexpr Case kCases[] = {{Side::left, "left"}, {Side::right, "right"}};
};
template <>
struct Codable<Side> : CodableByRawValue<Side> {};
template <>
inline constexpr bool prefersRawRepresentable<Side> = true;

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct Point {
  double x = 0;
  double y = 0;
  static constexpr auto codingKeys() {
    return std::tuple{CodingKey{"y", &Point::y}, CodingKey{"x", &Point::x}};
  }
  auto operator<=>(const Point&) const = default;
};

// What an archive of it holds.
struct Badge {
  int number = 0;
  static String className() { return "Badge"; }
  void encodeWithCoder(NSCoder& coder) const { coder.encode("number", number); }
  static std::optional<Badge> initWithCoder(const NSCoder& coder) {
    const auto number = coder.decode<int>("number");
    return number ? std::optional(Badge{*number}) : std::nullopt;
  }
  bool operator==(const Badge&) const = default;
};

struct CodableBadge : Badge {
  static constexpr auto codingKeys() { return std::tuple{CodingKey{"number", &CodableBadge::number}}; }
  static std::optional<CodableBadge> initWithCoder(const NSCoder& coder) {
    const auto badge = Badge::initWithCoder(coder);
    return badge ? std::optional(CodableBadge{{badge->number}}) : std::nullopt;
  }
};
struct ArchivedBadge : Badge, DefaultsPreferNSSecureCoding_ {
  static constexpr auto codingKeys() { return std::tuple{CodingKey{"number", &ArchivedBadge::number}}; }
  static std::optional<ArchivedBadge> initWithCoder(const NSCoder& coder) {
    const auto badge = Badge::initWithCoder(coder);
    return badge ? std::optional(ArchivedBadge{{badge->number}, {}}) : std::nullopt;
  }
};

// A collection and a set of their own.
struct Trail : DefaultsCollectionSerializable_ {
  using value_type = UUID;
  std::vector<UUID> steps;
  Trail() = default;
  explicit Trail(std::vector<UUID> given) : steps(std::move(given)) {}
  auto begin() const { return steps.begin(); }
  auto end() const { return steps.end(); }
};
struct Letters : DefaultsSetAlgebraSerializable_ {
  using value_type = String;
  std::set<String> letters;
  template <typename Iterator>
  Letters(Iterator begin, Iterator end) : letters(begin, end) {}
  std::vector<String> toArray() const { return {letters.begin(), letters.end()}; }
};

// A bridge of its own, to a type that has a bridge in turn.
struct Track {
  Point start;
  bool operator==(const Track&) const = default;
};
struct TrackBridge {
  using Value = Track;
  using Serializable = Point;
  static std::optional<Point> serialize(const std::optional<Track>& track) {
    return track ? std::optional(track->start) : std::nullopt;
  }
  static std::optional<Track> deserialize(const std::optional<Point>& start) {
    return start ? std::optional(Track{*start}) : std::nullopt;
  }
};

}  // namespace

template <>
struct DefaultsSerializable_<Track> {
  using Bridge = TrackBridge;
  static constexpr bool isNativelySupportedType = false;
};

namespace {

PropertyList text(const char* value) { return {String(value)}; }
PropertyList list(PropertyList::Array items) { return {std::move(items)}; }

template <typename T>
void expectStoredAs(const T& value, const PropertyList& object) {
  EXPECT_EQ(toSerializable(value), object);
  EXPECT_EQ(fromSerializable<T>(object), value);
}

TEST(Bridges, nativeValuesPassUnchanged) {
  expectStoredAs(true, {true});
  expectStoredAs(String("true"), text("true"));
  expectStoredAs(std::string("text"), text("text"));
  expectStoredAs(std::map<std::string, std::vector<std::string>>{{"a", {"b"}}},
                 {PropertyList::Dictionary{{"a", list({text("b")})}}});
  expectStoredAs(std::int8_t{-3}, {std::int8_t{-3}});
  expectStoredAs(0.5F, {0.5F});
  expectStoredAs(std::numeric_limits<std::uint64_t>::max(), {std::numeric_limits<std::uint64_t>::max()});
  expectStoredAs(5LL, {std::int64_t{5}});
  expectStoredAs(Date{Date::Interval(1.5)}, {Date{Date::Interval(1.5)}});
  expectStoredAs(PropertyList::Data{1, 2}, {PropertyList::Data{1, 2}});
  expectStoredAs(std::optional(3), {3});
  expectStoredAs(std::vector{true, false}, list({{true}, {false}}));
  expectStoredAs(std::vector<std::vector<int>>{{1}, {}}, list({list({{1}}), list({})}));
  expectStoredAs(std::map<String, double>{{"a", 0.5}}, {PropertyList::Dictionary{{"a", {0.5}}}});
  EXPECT_TRUE((isNativelySupported<std::unordered_map<String, std::optional<int>>>));
  EXPECT_FALSE((isNativelySupported<std::map<int, int>>));
  EXPECT_EQ(fromSerializable<double>({std::int64_t{2}}), 2.0);
  EXPECT_EQ(fromSerializable<float>({0.1}), std::nullopt);
  EXPECT_EQ(fromSerializable<int>({true}), std::nullopt);
}

TEST(Bridges, nativeTypesReadTextThatHoldsTheirJSON) {
  EXPECT_EQ(fromSerializable<bool>(text("false")), false);
  EXPECT_EQ(fromSerializable<bool>(text(" true\n")), true);
  EXPECT_EQ(fromSerializable<bool>(text("1")), std::nullopt);
  EXPECT_EQ(fromSerializable<int>(text("12")), 12);
  EXPECT_EQ(fromSerializable<String>(text("\"12\"")), "\"12\"");  // Text is text.
  EXPECT_EQ(fromSerializable<std::vector<int>>(list({text("1"), text("x"), text("2")})), (std::vector{1, 2}));
  EXPECT_EQ(fromSerializable<std::vector<int>>(list({text("1"), {2}})), std::nullopt);
  EXPECT_EQ(fromSerializable<std::optional<int>>(text("3")), 3);
}

TEST(Bridges, codableValuesAreJSONWithSortedKeys) {
  expectStoredAs(Point{1.5, -2}, text(R"({"x":1.5,"y":-2.0})"));
  expectStoredAs(std::optional(Point{0.5, 0}), text(R"({"x":0.5,"y":0.0})"));
  for (const char* json : {"", "{", R"({"x":1})", R"({"x":1,"y":"2"})", "[1,2]"}) {
    EXPECT_EQ(fromSerializable<Point>(text(json)), std::nullopt) << json;
  }
  const auto url = URL::fromString("https://example.org/a?b#c");
  EXPECT_EQ(toSerializable(*url), text(R"("https://example.org/a?b#c")"));
  EXPECT_EQ(fromSerializable<URL>(*toSerializable(*url)), url);
  EXPECT_EQ(fromSerializable<URL>(*toSerializable(URL("/tmp/a b/"))), URL("/tmp/a b/"));
}

TEST(Bridges, whatCannotBeEncodedIsNotStoredAndSaysSoInOneLine) {
  testing::internal::CaptureStdout();
  EXPECT_EQ(toSerializable(Point{std::numeric_limits<double>::quiet_NaN(), 0}), std::nullopt);
  const std::string said = testing::internal::GetCapturedStdout();
  EXPECT_THAT(said, testing::MatchesRegex("x: [^\n]+\n"));
  testing::internal::CaptureStdout();
  const Point good{1, 2}, bad{std::numeric_limits<double>::infinity(), 0};
  EXPECT_EQ(toSerializable(std::vector{good, bad, good})->as<PropertyList::Array>()->size(), 2U);
  EXPECT_EQ((toSerializable(std::map<String, Point>{{"good", good}, {"bad", bad}})),
            (PropertyList{PropertyList::Dictionary{{"good", *toSerializable(good)}}}));
  EXPECT_EQ(toSerializable(Range<Point>{good, bad}), std::nullopt);
  testing::internal::GetCapturedStdout();
}

TEST(Bridges, aTypeIsStoredByTheMostSpecificOfWhatItCanDo) {
  expectStoredAs(Theme::dark, text("dark"));
  EXPECT_EQ(fromSerializable<Theme>(text("sepia")), std::nullopt);
  expectStoredAs(Level::high, text("2"));
  EXPECT_EQ(fromSerializable<Level>({std::int64_t{2}}), std::nullopt);  // Not by its raw value.
  expectStoredAs(Side::left, text("left"));
  EXPECT_NE(toSerializable(Badge{4})->as<PropertyList::Data>(), nullptr);
  EXPECT_EQ(fromSerializable<Badge>(*toSerializable(Badge{4})), Badge{4});
  EXPECT_EQ(fromSerializable<Badge>({PropertyList::Data{1, 2, 3}}), std::nullopt);
  EXPECT_EQ(toSerializable(CodableBadge{{4}}), text(R"({"number":4})"));
  EXPECT_NE(toSerializable(ArchivedBadge{{4}, {}})->as<PropertyList::Data>(), nullptr);
  expectStoredAs(Track{{1, 2}}, text(R"({"x":1.0,"y":2.0})"));
}

TEST(Bridges, dictionariesAreStoredUnderTheTextOfTheirKeys) {
  expectStoredAs(std::map<int, bool>{{-1, true}, {20, false}},
                 {PropertyList::Dictionary{{"-1", text("true")}, {"20", text("false")}}});
  const PropertyList damaged{
      PropertyList::Dictionary{{"1", text("true")}, {"one", text("true")}, {"2", text("maybe")}}};
  EXPECT_EQ((fromSerializable<std::map<int, bool>>(damaged)), (std::map<int, bool>{{1, true}}));
  expectStoredAs(std::unordered_map<String, Theme>{{"day", Theme::light}},
                 {PropertyList::Dictionary{{"day", text("light")}}});
}

TEST(Bridges, setsAndCollectionsAreStoredAsArrays) {
  expectStoredAs(std::set<int>{2, 1}, list({{1}, {2}}));
  EXPECT_EQ(fromSerializable<std::set<int>>(list({{1}, {2}, {1}})), (std::set{1, 2}));
  EXPECT_EQ(fromSerializable<std::set<int>>(list({{1}, text("2")})), std::nullopt);
  EXPECT_EQ(fromSerializable<std::set<int>>(text("[1]")), std::nullopt);
  expectStoredAs(std::unordered_set<Date>{Date{}}, list({{Date{}}}));
  expectStoredAs(std::set<Point>{{1, 0}}, list({*toSerializable(Point{1, 0})}));
  EXPECT_EQ(fromSerializable<std::set<Point>>(list({text("bad"), *toSerializable(Point{1, 0})})),
            (std::set<Point>{{1, 0}}));
  const UUID id = UUID::random();
  EXPECT_EQ(toSerializable(Trail({id, id})), list({{id.uuidString()}, {id.uuidString()}}));
  EXPECT_EQ(fromSerializable<Trail>(list({text("no id"), {id.uuidString()}}))->steps, std::vector{id});
  const std::vector<String> letters{"b", "a", "b"};
  EXPECT_EQ(toSerializable(Letters(letters.begin(), letters.end())), list({text("a"), text("b")}));
  EXPECT_EQ(fromSerializable<Letters>(list({text("a"), text("a")}))->letters, std::set<String>{"a"});
}

TEST(Bridges, nestedBridgesComeBackAsTheyWere) {
  const std::map<int, std::vector<std::optional<Track>>> tracks{{1, {Track{{1, 2}}, Track{{3, 4}}}}, {2, {}}};
  EXPECT_EQ((fromSerializable<std::map<int, std::vector<std::optional<Track>>>>(*toSerializable(tracks))),
            tracks);
  const std::vector<ClosedRange<Date>> days{{Date{}, Date{Date::Interval(60)}}};
  EXPECT_EQ(fromSerializable<std::vector<ClosedRange<Date>>>(*toSerializable(days)), days);
  const std::vector<std::vector<Range<int>>> ranges{{{1, 2}, {3, 4}}, {}};
  EXPECT_EQ(fromSerializable<std::vector<std::vector<Range<int>>>>(*toSerializable(ranges)), ranges);
  EXPECT_EQ(fromSerializable<std::set<std::set<UUID>>>(*toSerializable(std::set<std::set<UUID>>{{UUID{}}})),
            (std::set<std::set<UUID>>{{UUID{}}}));
}

TEST(Bridges, rangesAreStoredAsTheirBoundsUnchecked) {
  expectStoredAs(Range<int>{1, 5}, list({{1}, {5}}));
  expectStoredAs(ClosedRange<double>{5, 1}, list({{5.0}, {1.0}}));
  expectStoredAs(ClosedRange<UUID>{UUID{}, UUID{}}, list({{UUID{}.uuidString()}, {UUID{}.uuidString()}}));
  for (const PropertyList& object :
       {list({}), list({{1}}), list({{1}, text("x")}), text("[1,5]"), PropertyList{1}}) {
    EXPECT_EQ(fromSerializable<Range<int>>(object), std::nullopt);
  }
  EXPECT_EQ(fromSerializable<Range<int>>(list({{1}, {5}, {9}})), (Range<int>{1, 5}));
}

TEST(Bridges, coloursInANamedSpaceAreReadableAndOthersArchived) {
  const Color named(0.25, 0.5, 1, 0.75);
  expectStoredAs(named, list({text("kCGColorSpaceSRGB"), list({{0.25}, {0.5}, {1.0}, {0.75}})}));
  const Color device(*CGColorCreate(CGColorSpace::deviceRGB(), {0.1, 0.2, 0.3, 1}));
  for (const Color& color : {Color::accentColor(), device}) {
    EXPECT_NE(toSerializable(color)->as<PropertyList::Data>(), nullptr);
    EXPECT_EQ(fromSerializable<Color>(*toSerializable(color)), color);
    EXPECT_EQ(fromSerializable<NSColor>(*toSerializable(color.nsColor())), color.nsColor());
  }
  const PropertyList space = text("kCGColorSpaceSRGB"), components = list({{0.1}, {0.2}, {0.3}, {1.0}});
  const PropertyList bad[] = {list({}),
                              list({space}),
                              list({text("kUnknown"), components}),
                              list({components, space}),
                              list({space, list({{0.1}})}),
                              list({space, list({{0.1}, {0.2}, {0.3}, text("1")})}),
                              {PropertyList::Data{1, 2}},
                              text("red")};
  for (const PropertyList& object : bad) EXPECT_EQ(fromSerializable<Color>(object), std::nullopt);
  EXPECT_EQ(fromSerializable<Color>(list({space, list({{0}, {1}, {0}, {1}})})), Color(0, 1, 0));
}

using BridgesInTheStoreTest = SettingsTest;

}  // namespace
}  // namespace tarnix
