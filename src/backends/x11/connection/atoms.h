#pragma once

#include <xcb/xproto.h>

#include <span>
#include <string_view>
#include <unordered_map>

namespace tarnix::x11 {

// The names that this backend uses itself. They are interned once, when the connection opens; names that
// other programs choose are never interned, since a server keeps them until it ends.
std::span<const std::string_view> atomNames();

// Both directions of that table.
class Atoms {
 public:
  void add(std::string_view name, xcb_atom_t atom);
  // `name` must be one of `atomNames()`; anything else gives XCB_ATOM_NONE.
  xcb_atom_t operator[](std::string_view name) const;
  // Empty for an atom that is not in the table.
  std::string_view nameOf(xcb_atom_t atom) const;

 private:
  std::unordered_map<std::string_view, xcb_atom_t> atoms_;
  std::unordered_map<xcb_atom_t, std::string_view> names_;
};

}  // namespace tarnix::x11
