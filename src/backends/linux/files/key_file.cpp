#include "backends/linux/files/key_file.h"

#include <algorithm>

namespace tarnix::linux_desktop {
namespace {

constexpr std::string_view kBlanks = " \t\r";

std::string_view trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::string_view takeLine(std::string_view& text) {
  const std::size_t end = std::min(text.find('\n'), text.size());
  const std::string_view line = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  return trimmed(line);
}

std::optional<char> meaningOf(char escape) {
  switch (escape) {
    case 's':
      return ' ';
    case 'n':
      return '\n';
    case 't':
      return '\t';
    case 'r':
      return '\r';
    case '\\':
      return '\\';
    default:
      return std::nullopt;
  }
}

}  // namespace

void forEachKey(std::string_view text, std::string_view group,
                const std::function<void(std::string_view, std::string_view)>& visit) {
  bool isInside = false;
  while (!text.empty()) {
    const std::string_view line = takeLine(text);
    if (line.starts_with('[')) {
      if (isInside) return;
      isInside = line.ends_with(']') && line.substr(1, line.size() - 2) == group;
      continue;
    }
    const std::size_t sign = line.find('=');
    if (!isInside || line.starts_with('#') || sign == std::string_view::npos) continue;
    visit(trimmed(line.substr(0, sign)), trimmed(line.substr(sign + 1)));
  }
}

std::optional<std::string_view> valueOfKey(std::string_view text, std::string_view group,
                                           std::string_view key) {
  std::optional<std::string_view> found;
  forEachKey(text, group, [&](std::string_view name, std::string_view value) {
    if (name == key && !found) found = value;
  });
  return found;
}

std::string unescaped(std::string_view value) {
  std::string result;
  for (std::size_t i = 0; i < value.size(); ++i) {
    const bool isEscape = value[i] == '\\' && i + 1 < value.size();
    const std::optional<char> meaning = isEscape ? meaningOf(value[i + 1]) : std::nullopt;
    result.push_back(meaning.value_or(value[i]));
    if (meaning) ++i;
  }
  return result;
}

}  // namespace tarnix::linux_desktop
