#include "platform/appkit/rich_text/html/html_encoding.h"

#include <algorithm>
#include <cctype>
#include <optional>

#include "platform/appkit/rich_text/text/code_page.h"
#include "platform/foundation/ascii.h"
#include "platform/foundation/utf8.h"

namespace tarnix {
namespace {

// Beyond this nobody looks for the encoding.
constexpr std::size_t kHead = 4096;

std::string decodedAs(std::string_view label, std::string_view bytes) {
  std::string text;
  if (const auto page = CodePage::labelled(label)) page->decode(bytes, text);
  return text;
}

// Markup is mostly ASCII, of which UTF-16 has a zero in every second byte.
std::string_view labelOfUtf16(std::string_view bytes) {
  if (bytes.starts_with("\xFF\xFE")) return "utf-16le";
  if (bytes.starts_with("\xFE\xFF")) return "utf-16be";
  const std::string_view head = bytes.substr(0, std::min<std::size_t>(bytes.size(), 256));
  std::size_t zeros[2] = {0, 0};
  for (std::size_t i = 0; i < head.size(); ++i) zeros[i % 2] += head[i] == '\0' ? 1 : 0;
  if (head.size() < 4 || zeros[0] + zeros[1] < head.size() / 4) return {};
  return zeros[1] > zeros[0] ? "utf-16le" : "utf-16be";
}

// What stands behind "charset=" in the head.
std::optional<std::string> declaredCharset(std::string_view bytes) {
  std::string head(bytes.substr(0, kHead));
  std::transform(head.begin(), head.end(), head.begin(), asciiLowercase);
  const std::size_t at = head.find("charset=");
  if (at == std::string::npos) return std::nullopt;
  const std::size_t start = head.find_first_not_of("\"' ", at + 8);
  if (start == std::string::npos) return std::nullopt;
  return head.substr(start, head.find_first_of("\"'; />", start) - start);
}

std::string utf8Text(std::string_view bytes) {
  if (const std::string_view label = labelOfUtf16(bytes); !label.empty()) {
    const bool hasMark = bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF");
    return decodedAs(label, bytes.substr(hasMark ? 2 : 0));
  }
  if (bytes.starts_with("\xEF\xBB\xBF")) bytes.remove_prefix(3);
  while (bytes.ends_with('\0')) bytes.remove_suffix(1);
  // What was cut within its last character is still UTF-8.
  const std::size_t valid = utf8Prefix(bytes);
  const bool isUtf8 = valid == bytes.size() || codePointAt(bytes, valid).form == CodePoint::Form::unfinished;
  if (isUtf8) return std::string(bytes.substr(0, valid));
  if (const auto charset = declaredCharset(bytes); charset && *charset != "utf-8") {
    if (CodePage::labelled(*charset)) return decodedAs(*charset, bytes);
  }
  return decodedAs("windows-1252", bytes);
}

}  // namespace

std::string htmlText(std::string_view bytes) {
  std::string text = utf8Text(bytes);
  while (!text.empty() && text.back() == '\0') text.pop_back();
  if (text.starts_with("Version:")) text.erase(0, std::min(text.find('<'), text.size()));
  return text;
}

}  // namespace tarnix
