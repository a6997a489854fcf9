#include "platform/foundation/canonical_mapping.h"

#include <unicode/bytestream.h>
#include <unicode/normalizer2.h>

#include <algorithm>
#include <cstdint>
#include <limits>

namespace tarnix {
namespace {

constexpr std::size_t kBlock = 256;

bool isShortEnough(std::string_view text) { return text.size() <= std::numeric_limits<std::int32_t>::max(); }

icu::StringPiece pieceOf(std::string_view text) {
  return {text.data(), static_cast<std::int32_t>(text.size())};
}

// What ICU has of a form stays with ICU; null when its data is missing.
const icu::Normalizer2* composition() {
  UErrorCode status = U_ZERO_ERROR;
  return icu::Normalizer2::getNFCInstance(status);
}

const icu::Normalizer2* decomposition() {
  UErrorCode status = U_ZERO_ERROR;
  return icu::Normalizer2::getNFDInstance(status);
}

std::optional<std::string> normalized(const icu::Normalizer2* form, std::string_view text) {
  if (form == nullptr || !isShortEnough(text)) return std::nullopt;
  std::string result;
  icu::StringByteSink<std::string> sink(&result, static_cast<std::int32_t>(text.size()));
  UErrorCode status = U_ZERO_ERROR;
  form->normalizeUTF8(0, pieceOf(text), sink, nullptr, status);
  if (U_FAILURE(status)) return std::nullopt;
  return result;
}

}  // namespace

std::optional<std::string> precomposedStringWithCanonicalMapping(std::string_view text) {
  return normalized(composition(), text);
}

std::optional<std::string> decomposedStringWithCanonicalMapping(std::string_view text) {
  return normalized(decomposition(), text);
}

bool isPrecomposed(std::string_view text) {
  const icu::Normalizer2* const form = composition();
  UErrorCode status = U_ZERO_ERROR;
  return form != nullptr && isShortEnough(text) && form->isNormalizedUTF8(pieceOf(text), status) &&
         U_SUCCESS(status);
}

// In blocks without a way out, so that compilers make vector code of it.
bool isASCII(std::string_view text) {
  while (!text.empty()) {
    const std::string_view block = text.substr(0, kBlock);
    std::uint8_t bits = 0;
    for (const char byte : block) bits = static_cast<std::uint8_t>(bits | static_cast<std::uint8_t>(byte));
    if (bits >= 0x80) return false;
    text.remove_prefix(block.size());
  }
  return true;
}

}  // namespace tarnix
