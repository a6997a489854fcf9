#include "backends/qt/text/plain/plain_text_index.h"

#include <algorithm>

#include "backends/qt/text/plain/plain_text_decoding.h"

namespace tarnix::qt {

void Utf16Index::advance() {
  const std::size_t goal = std::min(text_.size(), countedBytes_ + kBytesPerSlice);
  while (countedBytes_ < goal) countBlock();
}

std::size_t Utf16Index::blockBegin(std::size_t block) const {
  const std::size_t nominal = std::min(block * kBlockBytes, text_.size());
  const std::size_t start = codePointStart(text_, nominal);
  return start == nominal ? nominal : start + codePointAt(text_, start).length;
}

void Utf16Index::countBlock() {
  const std::size_t end = blockBegin(unitsBeforeBlock_.size() + 1);
  unitsBeforeBlock_.push_back(countedUnits_);
  countedUnits_ += utf16Length(text_.view().substr(countedBytes_, end - countedBytes_));
  countedBytes_ = end;
}

std::size_t Utf16Index::unitsBefore(std::size_t offset) const {
  if (offset >= countedBytes_) return countedUnits_;
  std::size_t block = offset / kBlockBytes;
  if (blockBegin(block) > offset) --block;
  const std::size_t begin = blockBegin(block);
  const std::size_t end = codePointStart(text_, offset);
  return unitsBeforeBlock_[block] + utf16Length(text_.view().substr(begin, end - begin));
}

std::size_t Utf16Index::offsetAt(std::size_t units) const {
  if (units >= countedUnits_) return countedBytes_;
  const auto after = std::upper_bound(unitsBeforeBlock_.begin(), unitsBeforeBlock_.end(), units);
  const auto block = static_cast<std::size_t>(after - unitsBeforeBlock_.begin()) - 1;
  std::size_t offset = blockBegin(block);
  for (std::size_t passed = unitsBeforeBlock_[block];;) {
    const CodePoint point = codePointAt(text_, offset);
    passed += utf16Length(point.value);
    if (passed > units) return offset;
    offset += point.length;
  }
}

}  // namespace tarnix::qt
