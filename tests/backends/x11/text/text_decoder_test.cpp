#include "backends/x11/text/text_decoder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace tarnix::x11 {
namespace {

using namespace std::string_view_literals;

std::string decode(TextEncoding encoding, std::string_view bytes, std::size_t pieceSize) {
  TextDecoder decoder(encoding);
  while (!bytes.empty()) {
    decoder.append(bytes.substr(0, pieceSize));
    bytes.remove_prefix(std::min(pieceSize, bytes.size()));
  }
  const std::optional<String> text = decoder.finish();
  return text ? text->str() : "(none)";
}

struct Case {
  TextEncoding encoding;
  std::string_view bytes;
  std::string_view text;
};

// Each case is cut at every place, since increments end anywhere.
TEST(TextDecoder, readsEveryEncodingHoweverItIsCut) {
  const Case cases[] = {
      {TextEncoding::utf8, "", ""},
      {TextEncoding::utf8, "plain text of some length", "plain text of some length"},
      {TextEncoding::utf8, "\xEF\xBB\xBFmarked\xEF\xBB\xBF", "marked\xEF\xBB\xBF"},
      {TextEncoding::utf8, "a\0b\0\0"sv, "a\0b\0"sv},
      {TextEncoding::utf8, "ends\r\n\0"sv, "ends\r\n"},
      {TextEncoding::utf8, "\xE2\x82\xAC\xF0\x9F\x8C\x8D\xC3\xBC!", "\xE2\x82\xAC\xF0\x9F\x8C\x8D\xC3\xBC!"},
      // Overlong, surrogate, beyond the last code point, lone continuation, cut off: one U+FFFD for each
      // maximal part, as the Unicode standard advises.
      {TextEncoding::utf8, "\xC0\xAF", "\uFFFD\uFFFD"},
      {TextEncoding::utf8, "\xED\xA0\x80", "\uFFFD\uFFFD\uFFFD"},
      {TextEncoding::utf8, "\xF4\x90\x80\x80", "\uFFFD\uFFFD\uFFFD\uFFFD"},
      {TextEncoding::utf8, "x\x80y", "x\uFFFDy"},
      {TextEncoding::utf8, "\xF0\x9F\x8C#\xE2\x82", "\uFFFD#\uFFFD"},
      {TextEncoding::utf8, "\xEF\xBB", "\uFFFD"},
      {TextEncoding::utf8, "\xE2\x82\xE2\x82\xAC", "\uFFFD\xE2\x82\xAC"},
      {TextEncoding::latin1, "na\xEFve \xA9\xFF caf\xE9\0"sv, "naïve ©ÿ café"},
      {TextEncoding::utf16, "\xFF\xFEH\0i\0\x3D\xD8\x00\xDE"sv, "Hi\U0001F600"},
      {TextEncoding::utf16, "\xFE\xFF\0H\0i\x20\xAC"sv, "Hi€"},
      {TextEncoding::utf16, "H\0i\0\0\0"sv, "Hi"},
      {TextEncoding::utf16, "\x3D\xD8H\0\x00\xDE\x3D\xD8"sv, "\uFFFDH\uFFFD\uFFFD"},
      {TextEncoding::utf16, "H\0i"sv, "H\uFFFD"},
      {TextEncoding::compoundText, "caf\xE9", "café"},
      {TextEncoding::compoundText, "a\x1B%G\xE2\x82\xAC\x1B%@\xE9", "a€é"},
      {TextEncoding::compoundText, "\x1B-L\xBF\xE0\x1B-F \xE1", "Пр α"},
      {TextEncoding::compoundText, "\x1B$(B0l\n\x1B(Bx\x1B$)C\xB0\xA1", "一\nx가"},
      {TextEncoding::compoundText, "abc\x1B$(Z0l", "(none)"},
      {TextEncoding::utf8OrLatin1, "\xEF\xBB\xBFsch\xC3\xB6n\0"sv, "schön"},
      {TextEncoding::utf8OrLatin1, "sch\xF6n \xE2\x82", "sch\u00F6n \u00E2\u0082"},
      {TextEncoding::utf16LittleEndian, "H\0\xAC\x20"sv, "H€"},
      {TextEncoding::utf16BigEndian, "\0H\x20\xAC"sv, "H€"},
  };
  for (const Case& each : cases) {
    for (std::size_t pieceSize = 1; pieceSize <= std::max<std::size_t>(each.bytes.size(), 1); ++pieceSize) {
      EXPECT_EQ(decode(each.encoding, each.bytes, pieceSize), each.text)
          << "in pieces of " << pieceSize << ", beginning with " << each.bytes.substr(0, 4);
    }
  }
}

TEST(TextDecoder, latin1RunsLongerThanItsBufferStayWhole) {
  const std::string bytes(1000, '\xE4');
  std::string text;
  for (int count = 0; count < 1000; ++count) text += "ä";
  EXPECT_EQ(decode(TextEncoding::latin1, bytes, 333), text);
}

TEST(Latin1, goesOutInPiecesThatAddUp) {
  EXPECT_TRUE(isLatin1("plain"));
  EXPECT_TRUE(isLatin1("naïve ©ÿ"));
  EXPECT_FALSE(isLatin1("10 €"));
  EXPECT_FALSE(isLatin1("Ā"));
  const std::string_view text = "naïve ©ÿ café";
  for (std::size_t limit = 1; limit < 20; ++limit) {
    std::string bytes;
    for (std::size_t at = 0; at < text.size();) {
      const Latin1Chunk chunk = latin1Chunk(text.substr(at), limit);
      ASSERT_GT(chunk.consumed, 0U);
      EXPECT_LE(chunk.bytes.size(), limit);
      bytes += chunk.bytes;
      at += chunk.consumed;
    }
    EXPECT_EQ(bytes, "na\xEFve \xA9\xFF caf\xE9");
  }
}

}  // namespace
}  // namespace tarnix::x11
