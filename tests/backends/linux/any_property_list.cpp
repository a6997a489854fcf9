#include "backends/linux/any_property_list.h"

#include <array>
#include <bit>
#include <cmath>
#include <limits>
#include <utility>

namespace tarnix::linux_desktop {
namespace {

// The first and last code point of each class, and some that are special.
constexpr std::pair<char32_t, char32_t> kCharacters[] = {
    {0x20, 0x7E},       {'\t', '\n'},       {'\r', '\r'},       {'&', '&'},          {'<', '>'},
    {']', ']'},         {0x7F, 0x9F},       {0xA0, 0x24F},      {0x300, 0x36F},      {0x590, 0x6FF},
    {0x2028, 0x202E},   {0x4E00, 0x9FFF},   {0xD7FF, 0xD7FF},   {0xE000, 0xFFFD},    {0xFEFF, 0xFEFF},
    {0x10000, 0x10000}, {0x1F300, 0x1FAFF}, {0xFFFFE, 0xFFFFF}, {0x10FFFD, 0x10FFFF}};

void append(std::string& text, char32_t point) {
  const auto byte = [&](char32_t bits) { text.push_back(static_cast<char>(bits)); };
  const auto continuation = [&](int shift) { byte(0x80 | (point >> shift & 0x3F)); };
  if (point < 0x80) return byte(point);
  if (point < 0x800) return byte(0xC0 | point >> 6), continuation(0);
  if (point < 0x10000) return byte(0xE0 | point >> 12), continuation(6), continuation(0);
  byte(0xF0 | point >> 18), continuation(12), continuation(6), continuation(0);
}

}  // namespace

PropertyList AnyPropertyList::value(std::size_t depth) {
  if (depth == 0 || below(12) == 0) return {leaf()};
  return below(2) == 0 ? PropertyList{array(depth)} : PropertyList{dictionary(depth)};
}

String AnyPropertyList::text() {
  std::string text;
  for (auto size = below(4) == 0 ? 0 : below(24); size > 0; --size) {
    const auto& [first, last] = kCharacters[below(std::size(kCharacters))];
    append(text, first + static_cast<char32_t>(below(last - first + 1)));
  }
  return text;
}

PropertyList::Value AnyPropertyList::leaf() {
  switch (below(14)) {
    case 0:
      return below(2) == 0;
    case 1:
      return integer<std::int8_t>();
    case 2:
      return integer<std::uint8_t>();
    case 3:
      return integer<std::int16_t>();
    case 4:
      return integer<std::uint16_t>();
    case 5:
      return integer<std::int32_t>();
    case 6:
      return integer<std::uint32_t>();
    case 7:
      return integer<std::int64_t>();
    case 8:
      return integer<std::uint64_t>();
    case 9:
      return static_cast<float>(real());
    case 10:
      return real();
    case 11:
      return date();
    case 12:
      return data();
    default:
      return text();
  }
}

std::uint64_t AnyPropertyList::count() { return below(12) == 0 ? 0 : 1 + below(3); }

// The first item alone goes deeper.
PropertyList::Array AnyPropertyList::array(std::size_t depth) {
  PropertyList::Array items;
  for (auto size = count(); size > 0; --size) items.push_back(value(items.empty() ? depth - 1 : 0));
  return items;
}

PropertyList::Dictionary AnyPropertyList::dictionary(std::size_t depth) {
  PropertyList::Dictionary entries;
  for (auto size = count(); size > 0; --size) {
    entries.insert_or_assign(text(), value(entries.empty() ? depth - 1 : 0));
  }
  return entries;
}

template <typename T>
T AnyPropertyList::integer() {
  const T special[] = {0, 1, static_cast<T>(-1), std::numeric_limits<T>::min(),
                       std::numeric_limits<T>::max()};
  return below(2) == 0 ? special[below(std::size(special))] : static_cast<T>(random_());
}

double AnyPropertyList::real() {
  using Limits = std::numeric_limits<double>;
  constexpr std::array kSpecial = {0.0,
                                   -0.0,
                                   1.0,
                                   0.1,
                                   1e21,
                                   Limits::min(),
                                   Limits::max(),
                                   Limits::lowest(),
                                   Limits::denorm_min(),
                                   -Limits::denorm_min(),
                                   Limits::epsilon(),
                                   Limits::infinity(),
                                   -Limits::infinity(),
                                   9007199254740993.0};
  if (below(2) == 0) return kSpecial[below(kSpecial.size())];
  const auto anyBits = std::bit_cast<double>(random_());
  return std::isnan(anyBits) ? 0.5 : anyBits;
}

// A whole second of the years 0 to 9999.
Date AnyPropertyList::date() {
  constexpr std::int64_t kFirst = -63'145'526'400, kLast = 252'423'993'599;
  const std::int64_t special[] = {kFirst, -1, 0, kLast};
  const auto anyOne = kFirst + static_cast<std::int64_t>(below(kLast - kFirst + 1));
  return {Date::Interval(static_cast<double>(below(3) == 0 ? special[below(4)] : anyOne))};
}

PropertyList::Data AnyPropertyList::data() {
  PropertyList::Data data(below(40));
  for (std::uint8_t& byte : data) byte = integer<std::uint8_t>();
  return data;
}

}  // namespace tarnix::linux_desktop
