#pragma once

#include <atomic>
#include <compare>
#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

namespace tarnix {

// Immutable UTF-8 text that shares its bytes: a copy costs one counter, never the text. An empty text owns
// nothing. Safe to copy and to read from any thread.
class String {
 public:
  String() noexcept = default;
  String(std::string_view text);
  String(const char* text) : String(std::string_view(text)) {}
  String(const std::string& text) : String(std::string_view(text)) {}
  String(const String& other) noexcept : block_(other.block_) { retain(); }
  String(String&& other) noexcept : block_(std::exchange(other.block_, nullptr)) {}
  String& operator=(String other) noexcept {
    std::swap(block_, other.block_);
    return *this;
  }
  ~String() { release(); }

  std::string_view view() const noexcept;
  operator std::string_view() const noexcept { return view(); }
  std::string str() const { return std::string(view()); }
  std::size_t size() const noexcept { return view().size(); }
  bool empty() const noexcept { return block_ == nullptr; }
  bool hasPrefix(std::string_view prefix) const noexcept { return view().starts_with(prefix); }

  // True when both texts are the same bytes in memory, not merely equal ones.
  bool sharesBytesWith(const String& other) const noexcept { return block_ == other.block_; }

  friend bool operator==(const String& a, const String& b) noexcept {
    return a.block_ == b.block_ || a.view() == b.view();
  }
  friend bool operator==(const String& a, std::string_view b) noexcept { return a.view() == b; }
  friend bool operator==(const String& a, const std::string& b) noexcept { return a.view() == b; }
  friend bool operator==(const String& a, const char* b) noexcept { return a.view() == b; }
  friend std::strong_ordering operator<=>(const String& a, const String& b) noexcept {
    return a.view() <=> b.view();
  }

 private:
  friend class StringBuilder;
  struct Block {
    std::atomic<std::size_t> owners;
    std::size_t size;
  };
  explicit String(Block* adopted) noexcept : block_(adopted) {}
  void retain() const noexcept;
  void release() noexcept;

  Block* block_ = nullptr;
};

// Gathers bytes that arrive in pieces and hands them over as a `String` without copying them. Growth relies
// on the allocator's in-place enlargement, so that a text of 100 MB never exists twice.
class StringBuilder {
 public:
  StringBuilder() = default;
  StringBuilder(StringBuilder&& other) noexcept;
  StringBuilder& operator=(StringBuilder&& other) noexcept;
  ~StringBuilder();

  void reserve(std::size_t capacity);
  void append(std::string_view bytes);
  // Drops everything behind the first `size` bytes; larger sizes change nothing.
  void truncate(std::size_t size);
  std::size_t size() const noexcept { return size_; }
  std::string_view view() const noexcept;
  // The gathered text; the builder is empty afterwards.
  String take();

 private:
  String::Block* block_ = nullptr;
  std::size_t size_ = 0;
  std::size_t capacity_ = 0;
};

}  // namespace tarnix

template <>
struct std::hash<tarnix::String> {
  std::size_t operator()(const tarnix::String& text) const noexcept {
    return std::hash<std::string_view>{}(text.view());
  }
};
