#include "previewer/text_decoding.h"

#include <unicode/ucnv.h>
#include <unicode/ucsdet.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace tarnix::previewer {
namespace {

using namespace std::string_view_literals;

// Of what a decision is made by.
constexpr std::size_t kSample = 64 * 1024;
constexpr int kSureConfidence = 40;
// Of a hundred characters, so many may be controls that no text has.
constexpr std::size_t kMostControls = 2;

struct Mark {
  std::string_view bytes;
  const char* encoding;
};

// The longer ones first, which begin with the shorter.
constexpr std::array kMarks{Mark{"\xff\xfe\0\0"sv, "UTF-32LE"}, Mark{"\0\0\xfe\xff"sv, "UTF-32BE"},
                            Mark{"\xef\xbb\xbf"sv, "UTF-8"}, Mark{"\xff\xfe"sv, "UTF-16LE"},
                            Mark{"\xfe\xff"sv, "UTF-16BE"}};

bool isControl(unsigned char each) {
  return (each < 0x20 && "\t\n\v\f\r\x1b\b"sv.find(static_cast<char>(each)) == std::string_view::npos) ||
         each == 0x7f;
}

bool hasManyControls(std::string_view utf8) {
  const auto controls =
      std::ranges::count_if(utf8, [](char each) { return isControl(static_cast<unsigned char>(each)); });
  const bool hasNull = utf8.find('\0') != std::string_view::npos;
  return hasNull || static_cast<std::size_t>(controls) * 100 > utf8.size() * kMostControls;
}

// How long the character at the start is; 0 where there is none (RFC 3629).
std::size_t characterLength(std::string_view text) {
  const auto at = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned first = at(0);
  if (first < 0x80) return 1;
  const std::size_t length = first >= 0xf0 ? 4 : first >= 0xe0 ? 3 : 2;
  if (first < 0xc2 || first > 0xf4 || text.size() < length) return 0;
  for (std::size_t i = 1; i < length; ++i) {
    if ((at(i) & 0xc0) != 0x80) return 0;
  }
  const unsigned second = at(1);
  const bool isBad = (first == 0xe0 && second < 0xa0) || (first == 0xed && second > 0x9f) ||
                     (first == 0xf0 && second < 0x90) || (first == 0xf4 && second > 0x8f);
  return isBad ? 0 : length;
}

// How much of it is UTF-8.
std::size_t wellFormedBytes(std::string_view text) {
  std::size_t at = 0;
  while (at < text.size()) {
    const std::size_t length = characterLength(text.substr(at));
    if (length == 0) break;
    at += length;
  }
  return at;
}

// Damage becomes replacement characters.
std::optional<std::string> converted(std::string_view bytes, const char* encoding) {
  UErrorCode error = U_ZERO_ERROR;
  UConverter* const source = ucnv_open(encoding, &error);
  UConverter* const target = ucnv_open("UTF-8", &error);
  std::string utf8(bytes.size() * 3 + 16, '\0');
  char* to = utf8.data();
  const char* from = bytes.data();
  if (U_SUCCESS(error)) {
    ucnv_convertEx(target, source, &to, utf8.data() + utf8.size(), &from, bytes.data() + bytes.size(),
                   nullptr, nullptr, nullptr, nullptr, true, true, &error);
  }
  ucnv_close(source);
  ucnv_close(target);
  if (U_FAILURE(error)) return std::nullopt;
  utf8.resize(static_cast<std::size_t>(to - utf8.data()));
  return utf8;
}

std::optional<std::string> unlessControls(std::optional<std::string> utf8) {
  if (utf8 && hasManyControls(*utf8)) return std::nullopt;
  return utf8;
}

// Unicode without a mark: letters of most scripts share their upper byte, so that one of the bytes of a unit
// is often zero, and always at the same place.
const char* wideEncoding(std::string_view sample) {
  if (sample.size() < 4) return nullptr;
  std::array<std::size_t, 4> zeroes{};
  for (std::size_t i = 0; i < sample.size(); ++i) zeroes[i % 4] += sample[i] == '\0' ? 1 : 0;
  const std::size_t units = sample.size() / 4;
  const auto often = [&](std::size_t place) { return zeroes[place] * 2 > units; };
  const auto rarely = [&](std::size_t place) { return zeroes[place] * 20 <= units; };
  if (often(1) && often(2) && often(3) && rarely(0)) return "UTF-32LE";
  if (often(0) && often(1) && often(2) && rarely(3)) return "UTF-32BE";
  if (often(1) && often(3) && rarely(0) && rarely(2)) return "UTF-16LE";
  if (often(0) && often(2) && rarely(1) && rarely(3)) return "UTF-16BE";
  return nullptr;
}

// By how often the letters of languages stand together. What is told with little confidence is most likely
// Western European.
std::string letterEncoding(std::string_view sample) {
  constexpr const char* kUsual = "windows-1252";
  UErrorCode error = U_ZERO_ERROR;
  UCharsetDetector* const detector = ucsdet_open(&error);
  ucsdet_setText(detector, sample.data(), static_cast<std::int32_t>(sample.size()), &error);
  const UCharsetMatch* const match = ucsdet_detect(detector, &error);
  std::string encoding = kUsual;
  if (U_SUCCESS(error) && match != nullptr && ucsdet_getConfidence(match, &error) >= kSureConfidence) {
    const char* const name = ucsdet_getName(match, &error);
    // A superset of Latin-1 for texts, whose other control characters nobody writes.
    if (U_SUCCESS(error) && name != "ISO-8859-1"sv && !std::string_view(name).starts_with("UTF-"))
      encoding = name;
  }
  ucsdet_close(detector);
  return encoding;
}

}  // namespace

std::optional<std::string> decodedText(std::string_view bytes, bool isPart) {
  for (const Mark& each : kMarks) {
    if (bytes.starts_with(each.bytes))
      return unlessControls(converted(bytes.substr(each.bytes.size()), each.encoding));
  }
  constexpr std::size_t kLongestCharacter = 4;
  const std::size_t wellFormed = wellFormedBytes(bytes);
  const bool isUtf8 = wellFormed == bytes.size() || (isPart && bytes.size() - wellFormed < kLongestCharacter);
  if (isUtf8 && bytes.find('\0') == std::string_view::npos)
    return unlessControls(std::string(bytes.substr(0, wellFormed)));
  const std::string_view sample = bytes.substr(0, kSample);
  if (const char* const encoding = wideEncoding(sample)) return unlessControls(converted(bytes, encoding));
  if (hasManyControls(bytes)) return std::nullopt;
  return unlessControls(converted(bytes, letterEncoding(sample).c_str()));
}

}  // namespace tarnix::previewer
