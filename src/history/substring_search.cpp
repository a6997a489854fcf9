#include "history/substring_search.h"

#include <cstdint>
#include <cstring>

namespace tarnix {
namespace {

constexpr std::size_t kBlock = 128;

// How common a byte is in text, from 0, in steps that matter for the choice.
int commonness(char byte) {
  constexpr std::string_view kByCommonness = "zqxjkvbpygfwmucldrhsnioate ";
  const auto rank = kByCommonness.find(byte);
  return rank == std::string_view::npos ? 0 : static_cast<int>(rank) + 1;
}

// True when any of the block's places holds both bytes. Written so that compilers make vector code of it.
bool mayBeIn(const char* first, const char* second, char firstByte, char secondByte) {
  std::uint8_t hits = 0;
  for (std::size_t i = 0; i < kBlock; ++i) {
    hits = static_cast<std::uint8_t>(hits | ((first[i] == firstByte) & (second[i] == secondByte)));
  }
  return hits != 0;
}

}  // namespace

SubstringSearch::SubstringSearch(std::string_view sought) : sought_(sought) {
  for (std::size_t i = 1; i < sought_.size(); ++i) {
    if (commonness(sought_[i]) < commonness(sought_[first_])) first_ = i;
  }
  second_ = first_ == 0 && sought_.size() > 1 ? 1 : 0;
  for (std::size_t i = 0; i < sought_.size(); ++i) {
    if (i != first_ && commonness(sought_[i]) < commonness(sought_[second_])) second_ = i;
  }
}

bool SubstringSearch::isIn(std::string_view text) const {
  if (sought_.size() <= 1) return sought_.empty() || text.find(sought_.front()) != std::string_view::npos;
  if (text.size() < sought_.size()) return false;
  const std::size_t places = text.size() - sought_.size() + 1;
  std::size_t place = 0;
  for (; place + kBlock <= places; place += kBlock) {
    const char* block = text.data() + place;
    if (!mayBeIn(block + first_, block + second_, sought_[first_], sought_[second_])) continue;
    if (isInTail(text.substr(0, place + kBlock + sought_.size() - 1), place)) return true;
  }
  return isInTail(text, place);
}

bool SubstringSearch::isInTail(std::string_view text, std::size_t from) const {
  const char rarest = sought_[first_];
  for (std::size_t at = from + first_; at + (sought_.size() - first_) <= text.size(); ++at) {
    const void* hit = std::memchr(text.data() + at, rarest, text.size() - at);
    if (hit == nullptr) return false;
    at = static_cast<std::size_t>(static_cast<const char*>(hit) - text.data());
    const std::size_t place = at - first_;
    if (place + sought_.size() > text.size()) return false;
    if (std::memcmp(text.data() + place, sought_.data(), sought_.size()) == 0) return true;
  }
  return false;
}

}  // namespace tarnix
