#include "history/substring_search.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <numeric>
#include <vector>

namespace tarnix {
namespace {

constexpr std::size_t kBlock = 256;

// How common a byte is in text, from 0, in steps that matter for the choice.
int commonness(char byte) {
  constexpr std::string_view kByCommonness = "zqxjkvbpygfwmucldrhsnioate ";
  const auto rank = kByCommonness.find(byte);
  return rank == std::string_view::npos ? 0 : static_cast<int>(rank) + 1;
}

// True when any of the block's places has all three bytes where they belong. Without a branch or a bit to
// extract, so that compilers make vector code of it: the least of the differences is 0 just where a place
// fits.
bool mayBeIn(const char* first, const char* second, const char* third, char a, char b, char c) {
  std::uint8_t least = 0xFF;
  for (std::size_t i = 0; i < kBlock; ++i) {
    const auto difference = static_cast<std::uint8_t>((first[i] ^ a) | (second[i] ^ b) | (third[i] ^ c));
    least = std::min(least, difference);
  }
  return least == 0;
}

}  // namespace

SubstringSearch::SubstringSearch(std::string_view sought) : sought_(sought) {
  std::vector<std::size_t> offsets(std::max<std::size_t>(sought.size(), 1));
  std::iota(offsets.begin(), offsets.end(), 0);
  if (!sought.empty()) {
    std::stable_sort(offsets.begin(), offsets.end(),
                     [&](auto a, auto b) { return commonness(sought[a]) < commonness(sought[b]); });
  }
  for (std::size_t i = 0; i < probes_.size(); ++i) probes_[i] = offsets[std::min(i, offsets.size() - 1)];
}

bool SubstringSearch::isIn(std::string_view text) const {
  if (sought_.empty()) return true;
  if (text.size() < sought_.size()) return false;
  const std::size_t places = text.size() - sought_.size() + 1;
  if (places < kBlock) return isAtAnyOf(text, 0, places);
  for (std::size_t place = 0; place + kBlock <= places; place += kBlock) {
    if (isInBlock(text, place)) return true;
  }
  return isInBlock(text, places - kBlock);  // Overlaps the block before it rather than go byte by byte.
}

bool SubstringSearch::isInBlock(std::string_view text, std::size_t place) const {
  const auto [a, b, c] = probes_;
  const char* block = text.data() + place;
  return mayBeIn(block + a, block + b, block + c, sought_[a], sought_[b], sought_[c]) &&
         isAtAnyOf(text, place, place + kBlock);
}

bool SubstringSearch::isAtAnyOf(std::string_view text, std::size_t firstPlace, std::size_t lastPlace) const {
  const std::size_t rarest = probes_[0];
  for (std::size_t place = firstPlace; place < lastPlace; ++place) {
    const void* hit = std::memchr(text.data() + place + rarest, sought_[rarest], lastPlace - place);
    if (hit == nullptr) return false;
    place = static_cast<std::size_t>(static_cast<const char*>(hit) - text.data()) - rarest;
    if (std::memcmp(text.data() + place, sought_.data(), sought_.size()) == 0) return true;
  }
  return false;
}

}  // namespace tarnix
