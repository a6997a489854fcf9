#include "platform/appkit/rich_text/rtf/rtf_tokens.h"
#include "platform/foundation/ascii.h"

#include <algorithm>
#include <limits>

namespace tarnix {
namespace {

using Kind = RtfToken::Kind;

bool isLineEnd(char c) { return c == '\r' || c == '\n' || c == '\0'; }
bool isSpecial(char c) { return c == '\\' || c == '{' || c == '}' || isLineEnd(c); }

int digitOf(char c) {
  if (isAsciiDigit(c)) return c - '0';
  const char lower = static_cast<char>(c | 0x20);
  return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

}  // namespace

RtfToken RtfTokens::next() {
  skipLineEnds();
  if (offset_ >= source_.size()) return {};
  switch (source_[offset_]) {
    case '{':
      return take(Kind::groupStart, 1);
    case '}':
      return take(Kind::groupEnd, 1);
    case '\\':
      return control();
    default:
      return text();
  }
}

void RtfTokens::skipLineEnds() {
  while (offset_ < source_.size() && isLineEnd(source_[offset_])) ++offset_;
}

RtfToken RtfTokens::take(Kind kind, std::size_t size) {
  const RtfToken token{kind, source_.substr(offset_, size), std::nullopt};
  offset_ += token.text.size();
  return token;
}

RtfToken RtfTokens::text() {
  const std::string_view all = rest();
  return take(Kind::text,
              static_cast<std::size_t>(std::find_if(all.begin(), all.end(), isSpecial) - all.begin()));
}

RtfToken RtfTokens::control() {
  ++offset_;
  if (offset_ >= source_.size()) return {};
  if (isAsciiLetter(source_[offset_])) return word();
  if (source_[offset_] == '\'') return hexadecimal();
  return take(Kind::symbol, 1);
}

// What is no hexadecimal number is left out with the digits that it lacks.
RtfToken RtfTokens::hexadecimal() {
  const std::string_view digits = rest().substr(1, 2);
  const int high = !digits.empty() ? digitOf(digits[0]) : -1;
  const int low = digits.size() > 1 ? digitOf(digits[1]) : -1;
  if (high < 0 || low < 0) {
    offset_ += high < 0 ? 1 : 2;
    return {Kind::symbol, "'", std::nullopt};
  }
  offset_ += 3;
  return {Kind::byte, digits, high * 16 + low};
}

RtfToken RtfTokens::word() {
  constexpr std::size_t kLongest = 32;
  const std::string_view all = rest();
  const std::string_view front = all.substr(0, kLongest);
  const auto end = std::find_if_not(front.begin(), front.end(), isAsciiLetter);
  RtfToken token = take(Kind::word, static_cast<std::size_t>(end - front.begin()));
  token.parameter = number();
  if (offset_ < source_.size() && source_[offset_] == ' ') ++offset_;
  if (token.text != "bin") return token;
  const auto size = static_cast<std::size_t>(std::max(token.parameter.value_or(0), 0));
  return take(Kind::binary, size);
}

// Numbers beyond what can be held are the nearest that can.
std::optional<std::int32_t> RtfTokens::number() {
  const std::string_view all = rest();
  const bool isNegative = all.starts_with('-');
  if (all == "-") ++offset_;  // The document is cut here.
  std::size_t size = isNegative ? 1 : 0;
  if (size >= all.size() || !isAsciiDigit(all[size])) return std::nullopt;
  std::int64_t value = 0;
  for (; size < all.size() && isAsciiDigit(all[size]); ++size) {
    value = std::min<std::int64_t>(value * 10 + (all[size] - '0'), std::numeric_limits<std::int32_t>::max());
  }
  offset_ += size;
  return static_cast<std::int32_t>(isNegative ? -value : value);
}

}  // namespace tarnix
