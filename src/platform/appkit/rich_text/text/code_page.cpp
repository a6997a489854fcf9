#include "platform/appkit/rich_text/text/code_page.h"

#include <unicode/ucnv.h>

#include <algorithm>
#include <array>
#include <utility>

#include "platform/foundation/utf8.h"

namespace tarnix {

// A converter holds the state of one conversion, and so is asked anew each time.
struct CodePage::Converter {
  explicit Converter(UConverter* opened) : converter(opened) {
    UErrorCode error = U_ZERO_ERROR;
    isLeading.fill(false);
    if (ucnv_getType(converter) == UCNV_MBCS) ucnv_getStarters(converter, isLeading.data(), &error);
  }
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;
  ~Converter() { ucnv_close(converter); }

  UConverter* converter;
  std::array<UBool, 256> isLeading{};
};

namespace {

UConverter* open(const std::string& name) {
  UErrorCode error = U_ZERO_ERROR;
  UConverter* const converter = ucnv_open(name.c_str(), &error);
  if (U_SUCCESS(error)) return converter;
  ucnv_close(converter);
  return nullptr;
}

std::string nameOf(int number) {
  switch (number) {
    case 65001:
      return "utf-8";
    case 10000:
      return "macintosh";
    case 10006:
      return "macgr";
    case 10007:
      return "x-mac-cyrillic";
    case 10029:
      return "x-mac-centraleurroman";
    case 10081:
      return "x-mac-turkish";
    case 932:
      return "ibm-943_P15A-2003";  // As Windows has Shift-JIS.
    case 936:
      return "gbk";
    case 949:
      return "windows-949-2000";
    case 950:
      return "windows-950-2000";
    case 874:
      return "windows-874-2000";
    default:
      return (number >= 1250 && number <= 1258 ? "windows-" : "ibm-") + std::to_string(number);
  }
}

}  // namespace

std::optional<CodePage> CodePage::numbered(int number) {
  if (number <= 0) return std::nullopt;
  UConverter* const converter = open(nameOf(number));
  if (converter == nullptr) return std::nullopt;
  return CodePage(std::make_shared<Converter>(converter));
}

std::optional<CodePage> CodePage::labelled(std::string_view label) {
  std::string name(label.substr(0, 64));
  std::transform(name.begin(), name.end(), name.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
  if (name == "iso-8859-1" || name == "latin1" || name == "us-ascii" || name == "ascii")
    name = "windows-1252";
  if (name == "iso-8859-9") name = "windows-1254";
  if (name == "gb2312") name = "gbk";
  if (name == "shift_jis" || name == "sjis") return numbered(932);
  if (name.empty()) return std::nullopt;
  UConverter* const converter = open(name);
  if (converter == nullptr) return std::nullopt;
  return CodePage(std::make_shared<Converter>(converter));
}

void CodePage::decode(std::string_view bytes, std::string& to) const {
  ucnv_reset(converter_->converter);
  // Some converters make a substitute of a byte that is no character.
  const bool hasSubstitutes = bytes.find('\x1A') == std::string_view::npos;
  const char* from = bytes.data();
  std::array<UChar, 512> piece;
  UChar lead = 0;  // The first half of a character that lies in two pieces.
  UErrorCode error = U_BUFFER_OVERFLOW_ERROR;
  while (error == U_BUFFER_OVERFLOW_ERROR) {
    error = U_ZERO_ERROR;
    UChar* unit = piece.data();
    ucnv_toUnicode(converter_->converter, &unit, piece.data() + piece.size(), &from,
                   bytes.data() + bytes.size(), nullptr, true, &error);
    for (const UChar* at = piece.data(); at < unit; ++at) {
      if (U16_IS_LEAD(*at)) {
        lead = *at;
        continue;
      }
      char32_t c = U16_IS_TRAIL(*at) ? static_cast<char32_t>(U16_GET_SUPPLEMENTARY(lead, *at)) : *at;
      if (c == 0x1A && hasSubstitutes) c = kReplacementCharacter;
      to += Utf8Bytes(c);
    }
  }
}

bool CodePage::isLead(unsigned char byte) const { return converter_->isLeading[byte] != 0; }

}  // namespace tarnix
