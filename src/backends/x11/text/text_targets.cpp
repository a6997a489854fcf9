#include "backends/x11/text/text_targets.h"

#include <algorithm>
#include <array>
#include <string>

namespace tarnix::x11 {
namespace {

struct NamedTarget {
  std::string_view name;
  TextTarget target;
};

// The first one is as it was copied: some toolkits turn the line ends of the second into those of the
// network.
constexpr std::array kTargets{
    NamedTarget{"utf8_string", {0, TextEncoding::utf8}},
    NamedTarget{"text/plain;charset=utf-8", {1, TextEncoding::utf8}},
    NamedTarget{"text/plain;charset=utf8", {1, TextEncoding::utf8}},
    NamedTarget{"text/plain", {2, TextEncoding::utf8OrLatin1}},
    NamedTarget{"text", {3, TextEncoding::utf8OrLatin1}},
    NamedTarget{"string", {4, TextEncoding::latin1}},
    NamedTarget{"text/plain;charset=utf-16", {5, TextEncoding::utf16}},
    NamedTarget{"text/plain;charset=utf-16le", {5, TextEncoding::utf16LittleEndian}},
    NamedTarget{"text/plain;charset=utf-16be", {5, TextEncoding::utf16BigEndian}},
    NamedTarget{"text/unicode", {6, TextEncoding::utf16}},
    NamedTarget{"text/plain;charset=iso-8859-1", {7, TextEncoding::latin1}},
    NamedTarget{"text/plain;charset=us-ascii", {7, TextEncoding::latin1}},
    NamedTarget{"compound_text", {8, TextEncoding::compoundText}},
};

std::string normalized(std::string_view name) {
  std::string plain;
  for (const char character : name) {
    const bool isUpper = character >= 'A' && character <= 'Z';
    if (character != ' ' && character != '"')
      plain += isUpper ? static_cast<char>(character - 'A' + 'a') : character;
  }
  return plain;
}

}  // namespace

std::optional<TextTarget> textTargetOf(std::string_view name) {
  const bool isMimeType = name.find('/') != std::string_view::npos;
  const std::string plain = normalized(name);
  const auto found =
      std::find_if(kTargets.begin(), kTargets.end(), [&](const auto& each) { return each.name == plain; });
  if (found == kTargets.end()) return std::nullopt;
  // The names of the convention are told from others by their capitals.
  const bool isCapital =
      std::none_of(name.begin(), name.end(), [](char each) { return each >= 'a' && each <= 'z'; });
  return isMimeType || isCapital ? std::optional(found->target) : std::nullopt;
}

}  // namespace tarnix::x11
