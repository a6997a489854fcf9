#pragma once

#include <xcb/xproto.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/foundation/string.h"

namespace tarnix::x11 {

// What a property of a window held when it was asked for. A property that is absent, or of a window that is
// gone, holds nothing. Any program can write anything: each reading checks the format.
class PropertyValue {
 public:
  PropertyValue() = default;
  // `reply` may be null.
  explicit PropertyValue(const xcb_get_property_reply_t* reply);

  bool isAbsent() const { return type_ == XCB_ATOM_NONE; }
  xcb_atom_t type() const { return type_; }
  // Empty unless the property is a list of 32-bit items.
  const std::vector<std::uint32_t>& items() const { return items_; }
  std::optional<std::uint32_t> firstItem() const;
  bool contains(std::uint32_t item) const;
  // Empty unless the property is a list of bytes.
  const std::string& bytes() const { return bytes_; }
  // The bytes as text: Latin-1 where the type says so, otherwise UTF-8 with what is broken replaced. Absent
  // where there are no bytes.
  std::optional<String> text() const;

 private:
  xcb_atom_t type_ = XCB_ATOM_NONE;
  std::vector<std::uint32_t> items_;
  std::string bytes_;
};

}  // namespace tarnix::x11
