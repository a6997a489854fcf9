#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

// Texts in the format of the Desktop Entry Specification: groups of `key=value` lines.
namespace tarnix::linux_desktop {

// Calls `visit` with the keys of the first group called `group`, in their order, a locale in brackets
// included. Values are as written. What is no `key=value` line is passed over.
void forEachKey(std::string_view text, std::string_view group,
                const std::function<void(std::string_view key, std::string_view value)>& visit);

// The first value of a key.
std::optional<std::string_view> valueOfKey(std::string_view text, std::string_view group,
                                           std::string_view key);

// Resolves \s, \n, \t, \r and \\; a backslash before anything else stays.
std::string unescaped(std::string_view value);

}  // namespace tarnix::linux_desktop
