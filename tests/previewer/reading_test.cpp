#include <gtest/gtest.h>

#include <string>

#include "previewer/content_kind.h"
#include "previewer/drawing_cleaning.h"
#include "previewer/text_decoding.h"

namespace tarnix::previewer {
namespace {

using namespace std::string_literals;
using Family = ContentKind::Family;

TEST(ContentKind, isToldByTheBeginning) {
  EXPECT_STREQ(contentKindOf("\x89PNG\r\n\x1a\n..."s).format, "png");
  EXPECT_STREQ(contentKindOf("RIFF\1\2\3\4WEBPVP8 "s).format, "webp");
  EXPECT_EQ(contentKindOf("junk in front\n%PDF-1.4"s).family, Family::document);
  EXPECT_EQ(contentKindOf("BM is what this text begins with, and nothing else of a picture"s).family,
            Family::unknown);
  EXPECT_EQ(contentKindOf("P3 is the third of the points in this list"s).family, Family::unknown);
  EXPECT_STREQ(contentKindOf("P6\n# comment\n3 2"s).format, "ppm");
  EXPECT_EQ(contentKindOf("RIFF\1\2\3\4WAVEfmt "s).family, Family::unknown);
  for (
      const std::string& svg :
      {"<svg>"s,
       "\xef\xbb\xbf <?xml version='1.0'?>\n<!-- a <svg> --><!DOCTYPE svg [ <!ENTITY a '>'> ]>\n<svg a='b'/>"s})
    EXPECT_EQ(contentKindOf(svg).family, Family::drawing) << svg;
  for (const std::string& other : {"<svgx/>"s, "<html><svg/></html>"s, "<!-- <svg> "s, ""s, "<?xml"s})
    EXPECT_EQ(contentKindOf(other).family, Family::unknown) << other;
}

TEST(DecodedText, isReadInEveryFormOfUnicode) {
  const std::string text = "Zoë saß im Café, 3 € bitte";
  EXPECT_EQ(decodedText(text, false), text);
  EXPECT_EQ(decodedText("\xef\xbb\xbf" + text, false), text);
  EXPECT_EQ(decodedText("\xff\xfe"
                        "a\0\xac\x20"s,
                        false),
            "a€");
  EXPECT_EQ(decodedText("\xfe\xff\0a\x20\xac"s, false), "a€");
  EXPECT_EQ(decodedText("\xff\xfe\0\0a\0\0\0"s, false), "a");
  EXPECT_EQ(decodedText("p\0l\0a\0i\0n\0 \0t\0e\0x\0t\0"s, false), "plain text");
  EXPECT_EQ(decodedText("\0\0\0p\0\0\0l\0\0\0a\0\0\0i\0\0\0n"s, false), "plain");
  EXPECT_EQ(decodedText("cut in the middle: \xe2\x82", true), "cut in the middle: ");
}

TEST(DecodedText, isGuessedWhereItIsNoUnicode) {
  EXPECT_EQ(decodedText("f\xfcr G\xe4ste", false), "für Gäste");
  EXPECT_EQ(decodedText("3 \x80 \x93quoted\x94", false), "3 € “quoted”");
  // Enough Russian in KOI8-R to be sure.
  std::string russian;
  for (int i = 0; i < 10; ++i)
    russian +=
        "\xfc\xd4\xcf \xd0\xd2\xcf\xd3\xd4\xcf \xd4\xc5\xcb\xd3\xd4 \xce\xc1 \xd2\xd5\xd3\xd3\xcb\xcf\xcd. ";
  EXPECT_EQ(decodedText(russian, false)->substr(0, 6), "Это");
}

TEST(DecodedText, isAbsentForWhatIsNoText) {
  EXPECT_EQ(decodedText("\x7f"
                        "ELF\2\1\1\0\0\0\0"s,
                        false),
            std::nullopt);
  EXPECT_EQ(decodedText("text with a null\0inside"s, false), std::nullopt);
  EXPECT_EQ(decodedText("\1\2\3\4text", false), std::nullopt);
  std::string noise;
  for (unsigned i = 0; i < 4000; ++i) noise += static_cast<char>((i * 2654435761U) >> 13);
  EXPECT_EQ(decodedText(noise, false), std::nullopt);
  EXPECT_TRUE(decodedText("\x1b[31mred\x1b[0m and a bell", false)) << "as terminals write";
}

TEST(CleanedDrawing, keepsWhatIsDrawnAndNoReferenceOutside) {
  const auto cleaned = [](const char* inside) {
    const QByteArray svg =
        QByteArray("<svg xmlns='http://www.w3.org/2000/svg' xmlns:x='http://www.w3.org/1999/xlink'>") +
        inside + "</svg>";
    return cleanedDrawing(svg).value_or("none").toStdString();
  };
  const auto has = [&](const char* inside, const char* part) {
    return cleaned(inside).find(part) != std::string::npos;
  };
  EXPECT_TRUE(has("<rect fill='url(#g)' style='fill:url( \"#g\")'/>", "url( &quot;#g"));
  EXPECT_TRUE(has("<use x:href='#a'/>", "#a"));
  EXPECT_TRUE(has("<image x:href='data:image/png;base64,AAAA'/>", "base64"));
  EXPECT_TRUE(has("<style>.a{fill:red}</style><text>say url(x)</text>", ".a{fill:red}"));
  EXPECT_EQ(
      cleanedDrawing("<!DOCTYPE svg [<!ENTITY a 'x'><!ENTITY b SYSTEM 'file:///OUT'>]><svg>&a;&b;</svg>"),
      "<svg>x</svg>");
  EXPECT_TRUE(has("<text>a text may say url(x)</text>", "say url(x)"));
  for (const char* outside :
       {"<image x:href='/etc/OUT'/>", "<image href='file:///OUT'/>", "<image src=' http://OUT'/>",
        "<rect fill='url(OUT#a)'/>", "<rect style='fill:URL ( &apos;OUT&apos; )'/>",
        "<rect style='fill:ur\\6c(OUT)'/>", "<style>@import 'OUT';</style>",
        "<style>.a{fill:url(OUT)}</style>", "<script>OUT</script>",
        "<foreignObject><p>OUT</p></foreignObject>", "<image x:href='data:image/svg+xml,OUT'/>",
        "<!-- OUT -->"}) {
    EXPECT_FALSE(has(outside, "OUT")) << outside;
    EXPECT_TRUE(has(outside, "</svg>") || has(outside, "/>")) << "the rest is there";
  }
}

TEST(CleanedDrawing, isAbsentForWhatGoesTooFar) {
  EXPECT_FALSE(cleanedDrawing("<svg><g></svg>"));
  QByteArray entities = "<!ENTITY e0 'laugh'>";
  for (int i = 1; i < 10; ++i) {
    const QByteArray former = "&e" + QByteArray::number(i - 1) + ";";
    entities += "<!ENTITY e" + QByteArray::number(i) + " '" + former.repeated(10) + "'>";
  }
  EXPECT_FALSE(cleanedDrawing("<!DOCTYPE svg [" + entities + "]><svg>&e9;</svg>"));
  QByteArray deep;
  for (int i = 0; i < 1000; ++i) deep += "<g>";
  for (int i = 0; i < 1000; ++i) deep += "</g>";
  EXPECT_FALSE(cleanedDrawing("<svg>" + deep + "</svg>"));
  EXPECT_FALSE(cleanedDrawing("<svg>" + QByteArray("<use href='#a'/>").repeated(1000) + "</svg>"));
  EXPECT_FALSE(cleanedDrawing("<svg>" + QByteArray("<a/>").repeated(200'000) + "</svg>"));
}

}  // namespace
}  // namespace tarnix::previewer
