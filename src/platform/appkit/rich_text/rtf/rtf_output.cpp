#include "platform/appkit/rich_text/rtf/rtf_output.h"

#include <cstddef>

#include "platform/foundation/utf8.h"

namespace tarnix {
namespace {

bool isPlain(char c) { return c >= 0x20 && c < 0x7F && c != '\\' && c != '{' && c != '}'; }

}  // namespace

void RtfOutput::put(char c) {
  written_ += c;
  endsWithWord_ = false;
}

void RtfOutput::raw(std::string_view rtf) {
  if (rtf.empty()) return;
  written_ += rtf;
  endsWithWord_ = isPlain(rtf.back()) && rtf.back() != ';' && rtf.back() != '?';
}

void RtfOutput::byte(int value) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  const auto byte = static_cast<std::size_t>(value);
  written_ += "\\'";
  put(kDigits[byte / 16 % 16]);
  put(kDigits[byte % 16]);
}

void RtfOutput::word(std::string_view name) {
  written_ += '\\';
  written_ += name;
  endsWithWord_ = true;
}

void RtfOutput::word(std::string_view name, int value) {
  word(name);
  written_ += std::to_string(value);
}

void RtfOutput::hiddenDestination(std::string_view name) {
  written_ += "\\*";
  word(name);
}

void RtfOutput::text(std::string_view utf8) {
  while (!utf8.empty()) {
    std::size_t plain = 0;
    while (plain < utf8.size() && isPlain(utf8[plain])) ++plain;
    if (plain > 0) {
      if (endsWithWord_) put(' ');
      written_ += utf8.substr(0, plain);
      utf8.remove_prefix(plain);
      continue;
    }
    const CodePoint next = codePointAt(utf8);
    character(next.value);
    utf8.remove_prefix(next.length);
  }
}

void RtfOutput::character(char32_t c) {
  switch (c) {
    case '\\':
    case '{':
    case '}':
      put('\\');
      return put(static_cast<char>(c));
    case '\t':
      return word("tab");
    case '\f':
      return word("page");
    case 0x2028:
      return word("line");
    default:
      break;
  }
  if (c < 0x10000) return unit(c);
  unit(0xD800U + ((c - 0x10000U) >> 10U));
  unit(0xDC00U + ((c - 0x10000U) & 0x3FFU));
}

// \u takes a signed number of 16 bits, and is followed by what older readers show instead.
void RtfOutput::unit(unsigned value) {
  const int number = static_cast<int>(value);
  word("u", number < 0x8000 ? number : number - 0x10000);
  put('?');
}

}  // namespace tarnix
