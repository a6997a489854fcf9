#include "platform/foundation/string_normalization.h"

#include <unicode/bytestream.h>
#include <unicode/normalizer2.h>

#include <algorithm>
#include <string>

namespace tarnix {
namespace {

using InstanceOf = const icu::Normalizer2* (*)(UErrorCode&);

void addSpelling(std::vector<String>& spellings, const String& text, InstanceOf instanceOf) {
  UErrorCode status = U_ZERO_ERROR;
  const icu::Normalizer2* const normalizer = instanceOf(status);
  std::string spelling;
  icu::StringByteSink<std::string> sink(&spelling);
  const std::string_view view = text.view();
  const icu::StringPiece piece(view.data(), static_cast<std::int32_t>(view.size()));
  if (U_SUCCESS(status)) normalizer->normalizeUTF8(0, piece, sink, nullptr, status);
  const bool isNew = std::find(spellings.begin(), spellings.end(), spelling) == spellings.end();
  if (U_SUCCESS(status) && isNew) spellings.emplace_back(spelling);
}

}  // namespace

std::vector<String> canonicalSpellings(const String& text) {
  constexpr std::size_t kLongest = 1 << 20;
  std::vector<String> spellings{text};
  const auto isAscii = [](char byte) { return static_cast<unsigned char>(byte) < 0x80; };
  if (text.size() > kLongest || std::ranges::all_of(text.view(), isAscii)) return spellings;
  addSpelling(spellings, text, icu::Normalizer2::getNFCInstance);
  addSpelling(spellings, text, icu::Normalizer2::getNFDInstance);
  return spellings;
}

}  // namespace tarnix
