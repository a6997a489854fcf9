#include "capture/utf8.h"

#include <algorithm>

namespace tarnix {
namespace {

struct ByteRange {
  unsigned char first;
  unsigned char last;

  bool contains(char byte) const {
    const auto value = static_cast<unsigned char>(byte);
    return first <= value && value <= last;
  }
};

constexpr ByteRange kContinuation{0x80, 0xBF};

struct SequenceForm {
  ByteRange lead;
  ByteRange second;
  std::size_t length;
};

// The narrowed second bytes keep out overlong forms, surrogates and what lies beyond U+10FFFF.
constexpr SequenceForm kForms[] = {
    {{0x00, 0x7F}, {}, 1},           {{0xC2, 0xDF}, kContinuation, 2},
    {{0xE0, 0xE0}, {0xA0, 0xBF}, 3}, {{0xE1, 0xEC}, kContinuation, 3},
    {{0xED, 0xED}, {0x80, 0x9F}, 3}, {{0xEE, 0xEF}, kContinuation, 3},
    {{0xF0, 0xF0}, {0x90, 0xBF}, 4}, {{0xF1, 0xF3}, kContinuation, 4},
    {{0xF4, 0xF4}, {0x80, 0x8F}, 4},
};

}  // namespace

std::size_t utf8SequenceLength(std::string_view text) {
  if (text.empty()) return 0;
  const auto* form =
      std::ranges::find_if(kForms, [&](const auto& each) { return each.lead.contains(text[0]); });
  if (form == std::end(kForms) || text.size() < form->length) return 0;
  if (form->length == 1) return 1;
  const auto rest = text.substr(2, form->length - 2);
  const bool isWellFormed = form->second.contains(text[1]) &&
                            std::ranges::all_of(rest, [](char byte) { return kContinuation.contains(byte); });
  return isWellFormed ? form->length : 0;
}

bool isValidUtf8(std::string_view text) {
  while (!text.empty()) {
    const auto length = utf8SequenceLength(text);
    if (length == 0) return false;
    text.remove_prefix(length);
  }
  return true;
}

}  // namespace tarnix
