#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

#include "platform/appkit/pasteboard.h"

namespace tarnix {

// One of the named pasteboards of the system, and what lies on it. Nothing is cached: each call asks the
// platform again.
class Pasteboard {
 public:
  enum Case : std::uint8_t { general, drag, find, font, ruler };
  struct Item;
  struct Type_;
  using LegacyTypeMap = std::unordered_map<NSPasteboard::PasteboardType, NSPasteboard::PasteboardType>;

  constexpr Pasteboard(Case value) : case_(value) {}

  static const std::array<Pasteboard, 5>& allCases();
  // From a legacy type name to the uniform type identifier that took its place.
  static const LegacyTypeMap& legacyTypeMap();

  std::shared_ptr<NSPasteboard> nsPasteboard() const;
  // In the platform's order; empty when the content can't be had.
  std::vector<Item> items() const;

  friend bool operator==(Pasteboard, Pasteboard) = default;

 private:
  friend struct std::hash<Pasteboard>;

  Case case_;
};

// One item on a pasteboard. Two are equal when they are the same object of the platform, which lives at least
// as long as this.
struct Pasteboard::Item {
  std::shared_ptr<NSPasteboardItem> rawValue;  // Never null.

  std::size_t id() const { return std::hash<std::shared_ptr<NSPasteboardItem>>{}(rawValue); }
  // The item's type names in its own order, without legacy names that only repeat a modern type and without
  // the names that the platform makes up for its own use.
  std::vector<NSPasteboard::PasteboardType> filteredTypes() const;
  // The filtered types, each paired with this item.
  std::vector<Type_> types() const;

  friend bool operator==(const Item&, const Item&) = default;
};

// One type that an item carries.
struct Pasteboard::Type_ {
  Item item;
  NSPasteboard::PasteboardType xType;

  // The item's hash in decimal, "-" and the type's name.
  String id() const;

  friend bool operator==(const Type_&, const Type_&) = default;
};

}  // namespace tarnix

template <>
struct std::hash<tarnix::Pasteboard> {
  std::size_t operator()(tarnix::Pasteboard pasteboard) const noexcept { return pasteboard.case_; }
};

template <>
struct std::hash<tarnix::Pasteboard::Item> {
  std::size_t operator()(const tarnix::Pasteboard::Item& item) const noexcept { return item.id(); }
};

template <>
struct std::hash<tarnix::Pasteboard::Type_> {
  std::size_t operator()(const tarnix::Pasteboard::Type_& type) const noexcept;
};
