#include "backends/linux/files/property_list_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <iterator>
#include <limits>

#include "platform/foundation/coding/base64.h"
#include "platform/foundation/utf8.h"

namespace tarnix::linux_desktop {
namespace {

using std::chrono::days;
using std::chrono::hours;
using std::chrono::minutes;
using std::chrono::seconds;
using std::chrono::sys_days;
using std::chrono::sys_seconds;
using std::chrono::year;
using std::chrono::year_month_day;

bool isDigit(char character) { return character >= '0' && character <= '9'; }
bool isBlank(char character) {
  return character == ' ' || character == '\t' || character == '\n' || character == '\r';
}

// Removes the digits that `text` begins with; false when there are none.
bool dropDigits(std::string_view& text) {
  const std::size_t count = std::min(text.find_first_not_of("0123456789"), text.size());
  text.remove_prefix(count);
  return count > 0;
}

void dropSign(std::string_view& text) {
  if (text.starts_with('+') || text.starts_with('-')) text.remove_prefix(1);
}

bool isRealNumeral(std::string_view text) {
  dropSign(text);
  if (!dropDigits(text)) return false;
  if (text.starts_with('.')) {
    text.remove_prefix(1);
    dropDigits(text);
  }
  if (text.starts_with('E') || text.starts_with('e')) {
    text.remove_prefix(1);
    dropSign(text);
    if (!dropDigits(text)) return false;
  }
  return text.empty();
}

template <typename Number>
std::optional<Number> numberFromWhole(std::string_view text) {
  Number number{};
  const char* const end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || rest != end) return std::nullopt;
  return number;
}

// The value of the digits at `offset`; the caller has checked that they are digits.
int fieldOf(std::string_view text, std::size_t offset, std::size_t size) {
  return numberFromWhole<int>(text.substr(offset, size)).value_or(-1);
}

// `pattern` holds 'd' where a digit is wanted; its other characters stand for themselves.
bool matches(std::string_view text, std::string_view pattern) {
  return std::equal(text.begin(), text.end(), pattern.begin(), pattern.end(),
                    [](char a, char b) { return b == 'd' ? isDigit(a) : a == b; });
}

bool isXMLCharacter(char32_t point) {
  if (point < 0x20) return point == '\t' || point == '\n' || point == '\r';
  return point != 0xFFFE && point != 0xFFFF;
}

}  // namespace

std::optional<PropertyList> integerFromText(std::string_view text) {
  std::string_view digits = text;
  dropSign(digits);
  if (!dropDigits(digits) || !digits.empty()) return std::nullopt;
  if (text.starts_with('+')) text.remove_prefix(1);
  if (const auto number = numberFromWhole<std::int64_t>(text)) return PropertyList{*number};
  if (const auto number = numberFromWhole<std::uint64_t>(text)) return PropertyList{*number};
  return std::nullopt;
}

std::optional<double> realFromText(std::string_view text) {
  if (text == "nan") return std::numeric_limits<double>::quiet_NaN();
  if (text == "+infinity") return std::numeric_limits<double>::infinity();
  if (text == "-infinity") return -std::numeric_limits<double>::infinity();
  if (!isRealNumeral(text)) return std::nullopt;
  if (text.starts_with('+')) text.remove_prefix(1);
  return numberFromWhole<double>(text);
}

std::string textOf(double real) {
  if (std::isnan(real)) return "nan";
  if (std::isinf(real)) return real > 0 ? "+infinity" : "-infinity";
  std::array<char, 32> buffer;
  const auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), real);
  return std::string(buffer.data(), end);
}

std::optional<Date> dateFromText(std::string_view text) {
  if (!matches(text, "dddd-dd-ddTdd:dd:ddZ")) return std::nullopt;
  const std::chrono::month month{static_cast<unsigned>(fieldOf(text, 5, 2))};
  const std::chrono::day day{static_cast<unsigned>(fieldOf(text, 8, 2))};
  const year_month_day date = year{fieldOf(text, 0, 4)} / month / day;
  const int hour = fieldOf(text, 11, 2), minute = fieldOf(text, 14, 2), second = fieldOf(text, 17, 2);
  if (!date.ok() || hour > 23 || minute > 59 || second > 59) return std::nullopt;
  const sys_seconds moment = sys_days{date} + hours{hour} + minutes{minute} + seconds{second};
  return Date{Date::Interval(moment - kReferenceDate)};
}

std::optional<std::string> textOf(Date date) {
  constexpr Date::Interval kFirst = sys_days{year{0} / 1 / 1} - kReferenceDate;
  constexpr Date::Interval kEnd = sys_days{year{10'000} / 1 / 1} - kReferenceDate;
  // Written so that a date which is not a number fails as well.
  if (!(date.sinceReferenceDate >= kFirst && date.sinceReferenceDate < kEnd)) return std::nullopt;
  const sys_seconds moment = kReferenceDate + std::chrono::floor<seconds>(date.sinceReferenceDate);
  const sys_days day = std::chrono::floor<days>(moment);
  const year_month_day calendar{day};
  const std::chrono::hh_mm_ss time{moment - day};
  std::array<char, 48> buffer;
  std::snprintf(buffer.data(), buffer.size(), "%04d-%02u-%02uT%02d:%02d:%02dZ", int{calendar.year()},
                unsigned{calendar.month()}, unsigned{calendar.day()}, static_cast<int>(time.hours().count()),
                static_cast<int>(time.minutes().count()), static_cast<int>(time.seconds().count()));
  return std::string(buffer.data());
}

std::optional<PropertyList::Data> dataFromText(std::string_view text) {
  std::string digits;
  std::ranges::copy_if(text, std::back_inserter(digits), [](char c) { return !isBlank(c); });
  return base64Decoded(digits);
}

std::string textOf(const PropertyList::Data& data) { return base64Encoded(data).str(); }

bool isXMLText(std::string_view text) {
  while (!text.empty()) {
    const CodePoint point = codePointAt(text);
    if (!point.isWhole() || !isXMLCharacter(point.value)) return false;
    text.remove_prefix(point.length);
  }
  return true;
}

}  // namespace tarnix::linux_desktop
