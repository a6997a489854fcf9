#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/foundation/string.h"

namespace tarnix::qt {

// Relates byte offsets of a UTF-8 text to positions in UTF-16 units, in which assistive technologies count.
// One number is kept for each 64 KB of text, and it grows by slices, so that nobody waits for a large text.
// What it says of the part counted so far is exact; positions beyond are taken for the end of that part.
class Utf16Index {
 public:
  static constexpr std::size_t kBlockBytes = 64 * 1024;
  static constexpr std::size_t kBytesPerSlice = 1024 * 1024;

  explicit Utf16Index(String text = {}) : text_(std::move(text)) {}

  // Counts one more slice.
  void advance();
  bool isComplete() const { return countedBytes_ == text_.size(); }

  std::size_t countedBytes() const { return countedBytes_; }
  std::size_t countedUnits() const { return countedUnits_; }
  std::size_t unitsBefore(std::size_t offset) const;
  // Start of the code point at `units`.
  std::size_t offsetAt(std::size_t units) const;
  std::size_t memoryBytes() const { return unitsBeforeBlock_.capacity() * sizeof(std::uint64_t); }

 private:
  // Blocks begin at the first code point that starts at a multiple of the block size or behind it.
  std::size_t blockBegin(std::size_t block) const;
  void countBlock();

  String text_;
  std::vector<std::uint64_t> unitsBeforeBlock_;
  std::size_t countedBytes_ = 0;
  std::size_t countedUnits_ = 0;
};

}  // namespace tarnix::qt
