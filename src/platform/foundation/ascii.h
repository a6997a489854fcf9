#pragma once

namespace tarnix {

constexpr bool isAsciiDigit(char c) { return c >= '0' && c <= '9'; }
constexpr bool isAsciiLower(char c) { return c >= 'a' && c <= 'z'; }
constexpr bool isAsciiUpper(char c) { return c >= 'A' && c <= 'Z'; }
constexpr bool isAsciiLetter(char c) { return isAsciiLower(c) || isAsciiUpper(c); }
constexpr char asciiLowercase(char c) { return isAsciiUpper(c) ? static_cast<char>(c - 'A' + 'a') : c; }

}  // namespace tarnix
