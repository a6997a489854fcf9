#include "capture/dynamic_type.h"

#include <algorithm>
#include <iostream>
#include <utility>
#include <vector>

#include "platform/foundation/split.h"
#include "platform/foundation/utf8.h"

namespace tarnix {
namespace {

constexpr std::string_view kDynamicPrefix = "dyn.";
constexpr std::string_view kDecodablePrefix = "dyn.a";
constexpr std::string_view kLegacyNameTag = "com.apple.nspboard-type";
constexpr unsigned kBitsPerDigit = 5;
constexpr unsigned kBitsPerByte = 8;

// Packs groups of five bits, most significant first, into bytes.
class BitPacker {
 public:
  void append(unsigned digit) {
    accumulator_ = accumulator_ << kBitsPerDigit | digit;
    pendingBits_ += kBitsPerDigit;
    if (pendingBits_ < kBitsPerByte) return;
    pendingBits_ -= kBitsPerByte;
    bytes_.push_back(static_cast<char>(accumulator_ >> pendingBits_));
    accumulator_ &= (1U << pendingBits_) - 1;
  }

  unsigned accumulator() const { return accumulator_; }
  unsigned pendingBits() const { return pendingBits_; }
  std::string takeBytes() { return std::move(bytes_); }

 private:
  std::string bytes_;
  unsigned accumulator_ = 0;
  unsigned pendingBits_ = 0;
};

// Splits off the first character; of malformed text, the first byte.
std::string_view takeCharacter(std::string_view& text) {
  const CodePoint point = codePointAt(text);
  const auto character = text.substr(0, point.isWhole() ? point.length : 1);
  text.remove_prefix(character.size());
  return character;
}

String withoutCode(std::string_view text) {
  const auto row = dynamicTagTable().find(String(text));
  return row == dynamicTagTable().end() ? String(text) : row->second;
}

std::unordered_map<String, String> readTags(std::string_view text) {
  std::unordered_map<String, String> tags;
  for (const auto tag : split(text, ':')) {
    const auto pieces = split(tag, '=');
    if (pieces.size() >= 2) tags.insert_or_assign(withoutCode(pieces[0]), withoutCode(pieces[1]));
  }
  return tags;
}

}  // namespace

const std::unordered_map<String, String>& dynamicTagTable() {
  static const std::unordered_map<String, String> table = {
      {"0", "UTTypeConformsTo"},
      {"1", "public.filename-extension"},
      {"2", "com.apple.ostype"},
      {"3", "public.mime-type"},
      {"4", "com.apple.nspboard-type"},
      {"5", "public.url-scheme"},
      {"6", "public.data"},
      {"7", "public.text"},
      {"8", "public.plain-text"},
      {"9", "public.utf16-plain-text"},
      {"A", "com.apple.traditional-mac-plain-text"},
      {"B", "public.image"},
      {"C", "public.video"},
      {"D", "public.audio"},
      {"E", "public.directory"},
      {"F", "public.folder"},
  };
  return table;
}

std::optional<std::string> dynamicTagDecode(std::string_view alphabet, std::string_view input) {
  BitPacker packer;
  while (!input.empty()) {
    const auto character = takeCharacter(input);
    const auto digit = alphabet.find(character);
    if (digit == std::string_view::npos) {
      std::cout << "Found character not in alphabet: " << character << '\n';
      return std::nullopt;
    }
    packer.append(static_cast<unsigned>(digit));
  }
  if (packer.accumulator() == 0) return packer.takeBytes();
  std::cout << packer.pendingBits() << " leftover bits: " << packer.accumulator() << '\n';
  return std::nullopt;
}

std::unordered_map<String, String> decodeDynamicType(std::string_view identifier) {
  if (!identifier.starts_with(kDecodablePrefix)) return {};
  auto text = dynamicTagDecode(dynamicTagAlphabet, identifier.substr(kDecodablePrefix.size()));
  if (!text || !isValidUtf8(*text)) return {};
  std::erase(*text, '?');
  return readTags(*text);
}

std::optional<NSPasteboard::PasteboardType> nspboardName(const NSPasteboard::PasteboardType& type) {
  if (!type.rawValue.hasPrefix(kDynamicPrefix)) return std::nullopt;
  const auto tags = decodeDynamicType(type.rawValue);
  const auto tag = tags.find(String(kLegacyNameTag));
  if (tag == tags.end()) return std::nullopt;
  return NSPasteboard::PasteboardType{tag->second};
}

String readableName(const NSPasteboard::PasteboardType& type) {
  return nspboardName(type).value_or(type).rawValue;
}

}  // namespace tarnix
