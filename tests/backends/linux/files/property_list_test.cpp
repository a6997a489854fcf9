#include <gmock/gmock.h>

#include <cmath>
#include <string>

#include "backends/linux/files/property_list_reader.h"
#include "backends/linux/files/property_list_writer.h"

namespace tarnix::linux_desktop {
namespace {

using Fault = PropertyListFault;

std::string document(const std::string& body) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">" + body + "</plist>";
}

std::optional<PropertyList> valueOf(const std::string& body) {
  return readXMLPropertyList(document(body)).value;
}

Fault faultOf(const std::string& xml) {
  const PropertyListReading reading = readXMLPropertyList(xml);
  EXPECT_EQ(reading.value.has_value(), reading.fault == Fault::none) << xml;
  return reading.fault;
}

PropertyList nestedArrays(std::size_t depth) {
  PropertyList list{PropertyList::Array()};
  for (std::size_t i = 1; i < depth; ++i) list = PropertyList{PropertyList::Array{std::move(list)}};
  return list;
}

TEST(XMLPropertyList, isWrittenInTheOrderOfItsKeysWithTabs) {
  const PropertyList list{
      PropertyList::Dictionary{{"b", {PropertyList::Array{{0.1}}}}, {"a", {Date{Date::Interval(3661)}}}}};
  const std::string xml = xmlPropertyList(list).value_or("");
  EXPECT_THAT(xml, ::testing::EndsWith("<plist version=\"1.0\">\n<dict>\n"
                                       "\t<key>a</key>\n\t<date>2001-01-01T01:01:01Z</date>\n"
                                       "\t<key>b</key>\n\t<array>\n\t\t<real>0.1</real>\n\t</array>\n"
                                       "</dict>\n</plist>\n"));
}

TEST(XMLPropertyList, fractionsOfASecondAreCutTowardsThePast) {
  for (const auto& [given, kept] : {std::pair{0.75, 0.0}, {-0.25, -1.0}, {1e9 + 0.999, 1e9}}) {
    const auto xml = xmlPropertyList({Date{Date::Interval(given)}});
    EXPECT_EQ(readXMLPropertyList(xml.value_or("")).value, (PropertyList{Date{Date::Interval(kept)}}))
        << given;
  }
}

TEST(XMLPropertyList, refusesToWriteWhatCouldNotBeRead) {
  const String unfit[] = {std::string_view("nul\0", 4),
                          "\x01",
                          "\x1b[0m",
                          "\xef\xbf\xbe",
                          "\xff",
                          "\xc0\xaf",
                          "\xed\xa0\x80",
                          "cut\xe4\xb8",
                          "\xf4\x90\x80\x80"};
  for (const String& text : unfit) {
    EXPECT_FALSE(xmlPropertyList({text})) << testing::PrintToString(text.str());
    EXPECT_FALSE(xmlPropertyList({PropertyList::Dictionary{{text, {true}}}}));
  }
  const double seconds[] = {NAN, INFINITY, 252423993600.0, -63145526401.0};
  for (const double date : seconds) EXPECT_FALSE(xmlPropertyList({Date{Date::Interval(date)}})) << date;
  EXPECT_TRUE(xmlPropertyList(nestedArrays(kPropertyListDepthLimit)));
  EXPECT_FALSE(xmlPropertyList(nestedArrays(kPropertyListDepthLimit + 1)));
}

TEST(XMLPropertyList, takesTheFormsThatOtherProgramsWrite) {
  EXPECT_EQ(valueOf("<true></true>"), PropertyList{true});
  EXPECT_EQ(valueOf(" <!-- note --> <integer>+007</integer>\n"), PropertyList{std::int64_t{7}});
  EXPECT_EQ(valueOf("<real>2.E+1</real>"), PropertyList{20.0});
  EXPECT_TRUE(std::isnan(*valueOf("<real>nan</real>")->as<double>()));
  EXPECT_EQ(valueOf("<data>\n\tAQ\n\tI=\n</data>"), (PropertyList{PropertyList::Data{1, 2}}));
  EXPECT_EQ(valueOf("<string>a<![CDATA[<b>]]>&#x41;</string>"), PropertyList{String("a<b>A")});
  EXPECT_EQ(
      faultOf("<!DOCTYPE plist SYSTEM \"file://localhost/x.dtd\"><plist version=\"1.0\"><dict/></plist>"),
      Fault::none);
}

TEST(XMLPropertyList, refusesTextThatIsNoneOfItsType) {
  const char* const values[] = {"<integer/>",
                                "<integer>12abc</integer>",
                                "<integer> 1</integer>",
                                "<integer>1.0</integer>",
                                "<integer>0x10</integer>",
                                "<integer>+-1</integer>",
                                "<integer>18446744073709551616</integer>",
                                "<integer>-9223372036854775809</integer>",
                                "<real/>",
                                "<real>1e999</real>",
                                "<real>.5</real>",
                                "<real>1,5</real>",
                                "<real>0x1p3</real>",
                                "<real>inf</real>",
                                "<real>1e</real>",
                                "<true>1</true>",
                                "<date>2001-02-29T00:00:00Z</date>",
                                "<date>2001-01-01T00:00:60Z</date>",
                                "<date>2001-01-01</date>",
                                "<date>2001-01-01T24:00:00Z</date>",
                                "<date>2001-01-01T00:00:00Z </date>",
                                "<data>A</data>",
                                "<data>AQI</data>",
                                "<data>AR==</data>",
                                "<data>A===</data>",
                                "<data>AQ==AQ==</data>",
                                "<data>A*==</data>"};
  for (const char* const value : values) EXPECT_EQ(faultOf(document(value)), Fault::value) << value;
}

TEST(XMLPropertyList, refusesOtherStructures) {
  const char* const bodies[] = {"",
                                "text",
                                "<null/>",
                                "<true/><true/>",
                                "<key>a</key>",
                                "<plist/>",
                                "<plist><true/></plist>",
                                "<array><plist><true/></plist></array>",
                                "<dict><key>a</key><plist><true/></plist></dict>",
                                "<string><true/></string>",
                                "<dict><true/></dict>",
                                "<dict><key>a</key></dict>",
                                "<dict><key>a</key><key>b</key></dict>",
                                "<dict><key>a</key><true/><true/></dict>",
                                "<array><key>a</key></array>",
                                "<array>1</array>",
                                "<string lang=\"en\">a</string>",
                                "<TRUE/>"};
  for (const char* const body : bodies) EXPECT_EQ(faultOf(document(body)), Fault::structure) << body;
  EXPECT_EQ(faultOf("<dict/>"), Fault::structure);
  EXPECT_EQ(faultOf("<plist version=\"2.0\"><true/></plist>"), Fault::structure);
  EXPECT_EQ(faultOf(document("<dict><key>a</key><true/><key>a</key><false/></dict>")), Fault::duplicateKey);
}

TEST(XMLPropertyList, refusesWhatIsNotPlainXML) {
  const std::string good = document("<string>x</string>");
  const std::string broken[] = {"",
                                "x",
                                good + "x",
                                good + good,
                                document("<string>\x01</string>"),
                                document("<string>&#1;</string>"),
                                document("<string>\xff</string>"),
                                document("<string>&lol;</string>"),
                                document("<string>\xed\xa0\x80</string>"),
                                good + std::string(1, '\0'),
                                "\xff\xfe<\0p\0"};
  for (const std::string& xml : broken) EXPECT_EQ(faultOf(xml), Fault::notWellFormed) << xml;
}

TEST(XMLPropertyList, refusesDeclarationsThatBringInOtherText) {
  const std::string root = "<plist version=\"1.0\"><string>&a;</string></plist>";
  const std::string declared[] = {
      "<!DOCTYPE plist [<!ENTITY a \"b\">]>" + root,
      "<!DOCTYPE plist [<!ENTITY a SYSTEM \"file:///etc/hostname\">]>" + root,
      "<!DOCTYPE plist SYSTEM \"x.dtd\" [<!ENTITY % a SYSTEM \"x\"> %a;]>" + root,
      "<!DOCTYPE plist SYSTEM \"x.dtd\">" + root,
      "<!DOCTYPE html><plist version=\"1.0\"><true/></plist>",
      "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><plist version=\"1.0\"><string>\xe9</string></plist>"};
  for (const std::string& xml : declared) EXPECT_EQ(faultOf(xml), Fault::declaration) << xml;
}

TEST(XMLPropertyList, boundsSizeAndDepth) {
  const std::string padding(kPropertyListSizeLimit, ' ');
  EXPECT_EQ(faultOf(document("<true/>") + padding), Fault::tooLarge);
  std::string deep;
  for (int i = 0; i < 100'000; ++i) deep += "<array>";
  EXPECT_EQ(faultOf(document(deep)), Fault::tooDeep);
  std::string deepest = xmlPropertyList(nestedArrays(kPropertyListDepthLimit)).value_or("");
  EXPECT_EQ(faultOf(deepest), Fault::none);
}

TEST(XMLPropertyList, namesTheLineOfTheFault) {
  EXPECT_EQ(readXMLPropertyList("<plist>\n<array>\n<integer>x</integer>\n</array></plist>").line, 3U);
}

// A document cut off anywhere before its last tag is a fault; a changed byte may leave a document, but never
// does harm. (The fuzz target does far more of this.)
TEST(XMLPropertyList, survivesDamageAtEveryByte) {
  const std::string xml =
      xmlPropertyList({PropertyList::Dictionary{{"a&b", {PropertyList::Array{{0.1}, {String("<text>")}}}},
                                                {"c", {PropertyList::Data{1, 2}}},
                                                {"d", {Date()}}}})
          .value_or("");
  const std::size_t end = xml.rfind('>');
  for (std::size_t size = 0; size < end; ++size) {
    ASSERT_FALSE(readXMLPropertyList(std::string_view(xml).substr(0, size)).value) << size;
  }
  constexpr std::string_view kReplacements("\0<&\xff", 4);
  for (std::size_t i = 0; i < end; ++i) {
    std::string damaged = xml;
    damaged[i] = kReplacements[i % kReplacements.size()];
    faultOf(damaged);
  }
}

}  // namespace
}  // namespace tarnix::linux_desktop
