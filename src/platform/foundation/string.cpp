#include "platform/foundation/string.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>

namespace tarnix {
namespace {

template <typename Block>
char* bytesOf(Block* block) {
  return reinterpret_cast<char*>(block + 1);
}

}  // namespace

String::String(std::string_view text) {
  StringBuilder builder;
  builder.reserve(text.size());
  builder.append(text);
  *this = builder.take();
}

std::string_view String::view() const noexcept {
  return block_ == nullptr ? std::string_view() : std::string_view(bytesOf(block_), block_->size);
}

void String::retain() const noexcept {
  if (block_ != nullptr) block_->owners.fetch_add(1, std::memory_order_relaxed);
}

void String::release() noexcept {
  if (block_ != nullptr && block_->owners.fetch_sub(1, std::memory_order_acq_rel) == 1) std::free(block_);
}

StringBuilder::StringBuilder(StringBuilder&& other) noexcept
    : block_(std::exchange(other.block_, nullptr)),
      size_(std::exchange(other.size_, 0)),
      capacity_(std::exchange(other.capacity_, 0)) {}

StringBuilder& StringBuilder::operator=(StringBuilder&& other) noexcept {
  std::swap(block_, other.block_);
  std::swap(size_, other.size_);
  std::swap(capacity_, other.capacity_);
  return *this;
}

StringBuilder::~StringBuilder() { std::free(block_); }

void StringBuilder::reserve(std::size_t capacity) {
  if (capacity <= capacity_) return;
  void* memory = std::realloc(block_, sizeof(String::Block) + capacity);
  if (memory == nullptr) throw std::bad_alloc();
  block_ = static_cast<String::Block*>(memory);
  capacity_ = capacity;
}

void StringBuilder::append(std::string_view bytes) {
  if (bytes.empty()) return;
  if (size_ + bytes.size() > capacity_) reserve(std::max(size_ + bytes.size(), capacity_ + capacity_ / 2));
  std::memcpy(bytesOf(block_) + size_, bytes.data(), bytes.size());
  size_ += bytes.size();
}

void StringBuilder::truncate(std::size_t size) { size_ = std::min(size, size_); }

std::string_view StringBuilder::view() const noexcept {
  return block_ == nullptr ? std::string_view() : std::string_view(bytesOf(block_), size_);
}

String StringBuilder::take() {
  if (size_ == 0) return String();
  if (void* trimmed = std::realloc(block_, sizeof(String::Block) + size_)) {
    block_ = static_cast<String::Block*>(trimmed);
  }
  new (block_) String::Block{1, size_};
  capacity_ = 0;
  size_ = 0;
  return String(std::exchange(block_, nullptr));
}

}  // namespace tarnix
