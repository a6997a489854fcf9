#include <gmock/gmock.h>

#include <random>
#include <string>
#include <utility>
#include <vector>

#include "platform/appkit/rich_text/conversions.h"
#include "platform/appkit/rich_text/html/html_reader.h"
#include "platform/appkit/rich_text/html/html_writer.h"
#include "platform/appkit/rich_text/rtf/rtf_reader.h"
#include "platform/appkit/rich_text/text/plain_text.h"

namespace tarnix {
namespace {

using namespace std::string_literals;
using Cases = std::vector<std::pair<std::string, std::string>>;

std::string plain(const std::string& html) { return plainTextOf(attributedStringFromHtml(html)).str(); }

// The look of the first character of `piece`.
TextAttributes lookOf(const std::string& html, const std::string& piece) {
  const NSAttributedString text = attributedStringFromHtml(html);
  const std::size_t at = text.string().view().find(piece);
  for (const auto& run : text.runs()) {
    if (at < run.end) return text.attributesOf(run);
  }
  ADD_FAILURE() << "no " << piece << " in " << text.string().view();
  return {};
}

void expectAll(const Cases& cases) {
  for (const auto& [html, text] : cases) EXPECT_EQ(plain(html), text) << html;
}

TEST(HtmlReader, findsOutTheEncoding) {
  const auto wide = [](const std::string& ascii, bool isBig) {
    std::string bytes;
    for (const char c : ascii) bytes += isBig ? std::string{'\0', c} : std::string{c, '\0'};
    return bytes;
  };
  expectAll({{"<p>Gr\xC3\xBC\xC3\x9F"
              "e",
              "Grüße"},
             {"<meta charset=windows-1251><p>Gr\xC3\xBC\xC3\x9F"
              "e",
              "Grüße"},
             {"<meta charset=\"windows-1251\"><p>\xEF\xF0\xE8", "при"},
             {"<p>caf\xE9 \x80", "café €"},
             {"\xEF\xBB\xBF<p>marked\0"s, "marked"},
             {wide("<p>little</p>", false), "little"},
             {"\xFE\xFF" + wide("<p>big</p>", true), "big"},
             {"<p>&lt;b&gt; &euro; &#x1F600; &nope; 1 < 2 &", "<b> € 😀 &nope; 1 < 2 &"},
             {"a&#x1F60bbbbbbbbbbbbbbbbbbbbbbbbbbbbb0;", "a\xEF\xBF\xBD"}});
}

TEST(HtmlReader, takesTheFragmentWithTheLookOfWhatIsAroundIt) {
  const std::string html =
      "Version:0.9\r\nStartHTML:00000097\r\n<html><head><style>.k{color:#c00000}</style></head><body><b "
      "class=k>out<!--StartFragment-->in<!--EndFragment-->out</b></body></html>";
  EXPECT_EQ(plain(html), "in");
  EXPECT_TRUE(lookOf(html, "in").font.isBold);
  EXPECT_EQ(lookOf(html, "in").color, (TextColor{192, 0, 0}));
}

TEST(HtmlReader, laysBlanksAndBlocksOutAsBrowsersDo) {
  expectAll({{" <p> a  \n b </p> <p><b>c </b> <i> d</i></p>", "a b\nc d"},
             {"<div>a<div>b</div>c</div><section><p>d</section>", "a\nb\nc\nd"},
             {"a<br>b<br></p>c<div><br></div>d", "a\nb\nc\n\nd"},
             {"<p>a</p><p></p><p>&nbsp;</p><p>b", "a\n\u00A0\nb"},
             {"<pre>a\n  b\tc\n</pre>d", "a\n  b\tc\nd"},
             {"<p style='white-space:pre-wrap'> a  b</p><x-y style='display:block'>c</x-y><x-y>d</x-y>e",
              " a  b\nc\nde"},
             {"a<span style='display: none'>x</span><script>y</script><p hidden>z</p><noscript>n</noscript>b",
              "ab"},
             {"<q>a</q> <svg><title>t</title><text>b</text></svg><math><mi>c</mi></math>", "“a” bc"}});
}

TEST(HtmlReader, readsPicturesAndFieldsAsWhatTheySay) {
  expectAll({{"a <img src=x alt='smile'> b<img src=y>", "a smile b"},
             {"<img width=1 height=1>a<img alt=' '>", "a"},
             {"<input value=v> <input type=submit value=Go> <input type=hidden value=h><input type=password "
              "value=p>",
              "v Go"},
             {"<select><option>one<option selected>two</select> <select><option>first<option>b</select>",
              "two first"},
             {"<textarea>a\n  b</textarea>", "a\n  b"}});
  EXPECT_EQ(lookOf("a<img src=y>", "\uFFFC").attachment, String("Picture"));
}

TEST(HtmlReader, isNotHeldUpByStyleSheets) {
  std::string html = "<style>";
  for (int i = 0; i < 3000; ++i) html += "* * * * * * * *{color:red}";
  html += "</style>";
  for (int i = 0; i < 100; ++i) html += "<div>";
  for (int i = 0; i < 20'000; ++i) html += "<p>x";
  const NSAttributedString text = attributedStringFromHtml(html);
  EXPECT_EQ(text.attributesOf(text.runs().front()).color, (TextColor{255, 0, 0}));
  EXPECT_EQ(text.string().size(), 39'999U);
}

TEST(HtmlReader, numbersItemsAndSeparatesCells) {
  expectAll({{"<ul><li>a<li>b<ul><li>c</ul></ul>", "•\ta\n•\tb\n◦\tc"},
             {"<ol start=3><li>a<li value=9><p>b</p>more<li style='list-style:none'>c</ol>",
              "3.\ta\n9.\tb\nmore\nc"},
             {"<ol reversed><li>a<li>b</ol>", "2.\ta\n1.\tb"},
             {"<ol type=i><li>a<li>b</ol><ol type=A><li>c</ol>", "i.\ta\nii.\tb\nA.\tc"},
             {"x<table><caption>t</caption><tr><th>a<td><p>b</p><p>c</p><tr><td colspan=2>d</table>y",
              "x\nt\na\tb\nc\nd\ny"},
             {"<table><tr><td>a<table><tr><td>b<td>c</table><td>d</table>", "a\nb\tc\n\td"}});
  const NSAttributedString table =
      attributedStringFromHtml("<table><tr><td rowspan=2>a<td>b<tr><td colspan=3>c</table>");
  std::vector<TableCell> cells;
  for (const auto& paragraph : table.paragraphs())
    cells.push_back(table.cellOf(paragraph) != nullptr ? *table.cellOf(paragraph) : TableCell{9});
  EXPECT_THAT(cells, ::testing::ElementsAre(TableCell{0, 0, 0, 2, 1, 1}, TableCell{0, 0, 1, 1, 1, 1},
                                            TableCell{0, 1, 1, 1, 3, 1}));
}

TEST(HtmlReader, takesLooksFromElementsAttributesAndStyles) {
  EXPECT_EQ(lookOf("<font face='Courier New, mono' size=5 color=red>x", "x").font,
            (NSFont{"Courier New", 18, false, false}));
  EXPECT_EQ(lookOf("<font color=red>x", "x").color, (TextColor{255, 0, 0}));
  EXPECT_EQ(lookOf("<h1>x", "x").font, (NSFont{"", 24, true, false}));
  EXPECT_EQ(lookOf("<p style='font: italic 600 16px/1.5 \"A B\", serif'>x", "x").font,
            (NSFont{"A B", 12, true, true}));
  EXPECT_EQ(lookOf("<a href=' https://a.b/ '>x</a>", "x").link, String("https://a.b/"));
  EXPECT_EQ(lookOf("<span style='text-decoration: line-through'>x", "x").strikethrough, LineStyle::single);
  EXPECT_EQ(lookOf("<b>a<span style='font-weight:400'>x</span></b>", "x").font.isBold, false);
  EXPECT_EQ(lookOf("<sub>x", "x").superscript, -1);
  EXPECT_EQ(lookOf("<p style='text-transform:uppercase'>x", "x").capitals, TextCapitals::all);
  for (const char* color :
       {"#1e90ff", "dodgerblue", "rgb(30, 144, 255)", "rgb(30 144 255 / 100%)", "hsl(209.6, 100%, 55.9%)"}) {
    const std::string html = "<p style=\"color:" + std::string(color) + "\">x";
    EXPECT_EQ(lookOf(html, "x").color, (TextColor{30, 144, 255})) << color;
  }
  EXPECT_EQ(lookOf("<p style='color:#000;background:transparent'>x", "x"), lookOf("<p>x", "x"));
  const std::string sheet =
      "<style><!-- /* a */ p, .m { color: green !important } td > .n b { font-style: italic } #i { "
      "font-size: 20pt } "
      "@media print { p { color: red } } @media screen { u { color: blue } } a:hover { color: red } "
      "--></style>";
  EXPECT_EQ(lookOf(sheet + "<p style='color:red'>x", "x").color, (TextColor{0, 128, 0}));
  EXPECT_TRUE(lookOf(sheet + "<table><td><p class='o n'><i></i><b>x", "x").font.isItalic);
  EXPECT_FALSE(lookOf(sheet + "<p class=n><b>x", "x").font.isItalic);
  EXPECT_EQ(lookOf(sheet + "<p id=i>x", "x").font.pointSize, 20);
  EXPECT_EQ(lookOf(sheet + "<div><u>x", "x").color, (TextColor{0, 0, 255}));
}

// Each took minutes, gigabytes or the stack where nothing held it.
TEST(HtmlReader, isNotHeldUpByHostileDocuments) {
  const auto repeated = [](const std::string& piece, int count) {
    std::string text;
    while (count-- > 0) text += piece;
    return text;
  };
  std::string attributes, fonts;
  for (int i = 0; i < 50'000; ++i) attributes += " a" + std::to_string(i) + "=b";
  for (int i = 0; i < 5'000; ++i) fonts += "<p><font size=" + std::to_string(i) + ">x</p>";
  for (const std::string& html :
       {repeated("<div>", 50'000), repeated("<b><i>", 50'000), repeated("<table><tr><td>", 6'000),
        repeated("<ul><li>", 20'000), "<p" + attributes + ">", fonts, repeated("&amp", 200'000),
        "<table><tr>" + repeated("<td colspan=99999999 rowspan=99999999>", 2'000),
        "<!--" + repeated("<p>", 100'000), "<style>" + repeated("a{", 100'000),
        repeated("<a href='", 100'000), repeated("<", 500'000)}) {
    EXPECT_LT(attributedStringFromHtml(html + "end").string().size(), 3'000'000U) << html.substr(0, 20);
  }
  EXPECT_EQ(plain(repeated("<span>", 1'000) + "deep" + repeated("</span>", 1'000)), "deep");
}

NSAttributedString randomText(unsigned seed) {
  std::mt19937 random(seed);
  const auto below = [&](unsigned end) { return static_cast<std::size_t>(random() % end); };
  AttributedStringBuilder builder;
  constexpr const char* kPieces[] = {"word", " two  words ",    "<b>&amp;\"", "a\tb", "שלום",
                                     "😀",    "line\u2028break", "x"};
  for (std::size_t paragraphs = 1 + below(5); paragraphs > 0; --paragraphs) {
    ParagraphStyle style;
    style.alignment = static_cast<TextAlignment>(below(5));
    TextAttributes look;
    for (std::size_t pieces = 1 + below(4); pieces > 0; --pieces) {
      look = {};
      look.font = {below(2) == 0 ? "" : "Some Font", static_cast<CGFloat>(8 + below(20)), below(2) == 0,
                   below(2) == 0};
      if (below(3) == 0) look.underline = below(2) == 0 ? LineStyle::single : LineStyle::wavy;
      if (below(4) == 0) look.strikethrough = LineStyle::single;
      if (below(4) == 0) look.superscript = 1;
      if (below(3) == 0) look.color = TextColor{200, static_cast<std::uint8_t>(below(256)), 7};
      if (below(4) == 0) look.highlight = TextColor{1, 2, static_cast<std::uint8_t>(below(256))};
      if (below(4) == 0) look.link = "https://example.org/?a=1&b=\"2\"";
      builder.append(kPieces[below(8)], look);
    }
    builder.append(".", look);
    builder.endParagraph('\n', builder.add(look), builder.add(style));
  }
  return builder.take();
}

TEST(HtmlWriter, writesWhatReadsBackTheSame) {
  for (unsigned seed = 0; seed < 300; ++seed) {
    const NSAttributedString text = randomText(seed);
    const String html = htmlFrom(text);
    const NSAttributedString back = attributedStringFromHtml(html);
    // The last line feed is the end of its block.
    ASSERT_EQ(back.string().str() + "\n", text.string().str()) << html.view();
    ASSERT_EQ(back.runs().size(), text.runs().size()) << html.view();
    for (std::size_t i = 0; i < text.runs().size(); ++i)
      ASSERT_EQ(back.attributesOf(back.runs()[i]), text.attributesOf(text.runs()[i])) << i << html.view();
    for (std::size_t i = 0; i < text.paragraphs().size(); ++i)
      ASSERT_EQ(back.styleOf(back.paragraphs()[i]).alignment, text.styleOf(text.paragraphs()[i]).alignment);
  }
}

TEST(Conversions, carryATextFromFormToForm) {
  const std::string html =
      "<h2>Head</h2><p>some <b>bold</b></p><ul><li>a<li>b</ul><table><tr><td>1<td>2<tr><td>3<td>4</table>end";
  const auto rtf = rtfFromHtml(html);
  ASSERT_TRUE(rtf.has_value());
  const auto forms = formsOfRtf(*rtf);
  ASSERT_TRUE(forms.has_value());
  EXPECT_EQ(forms->plainText, String("Head\nsome bold\n•\ta\n•\tb\n1\t2\n3\t4\nend"));
  EXPECT_EQ(plain(forms->html.str()), forms->plainText.str());
  EXPECT_TRUE(lookOf(forms->html.str(), "bold").font.isBold);
  for (const char* picture : {"<img src=a.png> <p>&#32;</p>", "<!--StartFragment--><img src=a alt='A view'>"})
    EXPECT_FALSE(rtfFromHtml(picture).has_value()) << "a picture alone is no text";
  EXPECT_FALSE(formsOfRtf("no rtf").has_value());
}

}  // namespace
}  // namespace tarnix
