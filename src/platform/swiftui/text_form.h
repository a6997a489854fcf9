#pragma once

#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>

// What the text forms of elements and modifiers are put together from.
namespace tarnix::text_form {

// In quotation marks, on one line.
std::string quoted(std::string_view text);
// Without trailing zeros.
std::string number(double value);
inline std::string onOff(bool value) { return value ? "on" : "off"; }

// Of enumerators, in their order.
template <typename Enum>
std::string name(Enum value, std::initializer_list<const char*> names) {
  return names.begin()[static_cast<std::size_t>(value)];
}

}  // namespace tarnix::text_form
