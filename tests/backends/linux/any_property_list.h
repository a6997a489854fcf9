#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>

#include "platform/foundation/property_list.h"

namespace tarnix::linux_desktop {

// Makes values of every kind that settings can hold, as odd as they come: numbers at their limits and of any
// bits, texts of every class of characters, nesting as deep as is asked for. The same seed gives the same
// ones. There is no "not a number", since it equals nothing.
class AnyPropertyList {
 public:
  explicit AnyPropertyList(unsigned seed) : random_(seed) {}

  // With at most `depth` arrays and dictionaries within another, now and then exactly so many.
  PropertyList value(std::size_t depth);
  String text();

 private:
  std::uint64_t below(std::uint64_t end) { return random_() % end; }
  PropertyList::Value leaf();
  std::uint64_t count();
  PropertyList::Array array(std::size_t depth);
  PropertyList::Dictionary dictionary(std::size_t depth);
  template <typename T>
  T integer();
  double real();
  Date date();
  PropertyList::Data data();

  std::mt19937_64 random_;
};

}  // namespace tarnix::linux_desktop
