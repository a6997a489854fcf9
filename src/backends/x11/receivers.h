#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "backends/x11/text_decoder.h"
#include "backends/x11/transfer.h"

namespace tarnix::x11 {

// A list of atoms, as TARGETS answers it.
class AtomListReceiver : public Receiver {
 public:
  explicit AtomListReceiver(const Atoms& atoms) : atoms_(atoms) {}
  bool begin(xcb_atom_t type, int format, std::size_t size) override;
  void append(std::string_view bytes) override { bytes_ += bytes; }
  // Each atom once, in order.
  std::vector<xcb_atom_t> take() const;

 private:
  const Atoms& atoms_;
  std::string bytes_;
};

// Text, decoded as it arrives. Its encoding is decided by the type that the owner answers with, which must be
// the target that was asked for or one of the types that stand for text.
class TextReceiver : public Receiver {
 public:
  TextReceiver(const Atoms& atoms, xcb_atom_t target) : atoms_(atoms), target_(target) {}
  bool begin(xcb_atom_t type, int format, std::size_t size) override;
  void append(std::string_view bytes) override;
  // Absent when nothing came, or nothing that can be read.
  std::optional<String> take();

 private:
  std::optional<TextEncoding> encodingOf(xcb_atom_t type) const;

  const Atoms& atoms_;
  xcb_atom_t target_;
  std::optional<TextDecoder> decoder_;
};

}  // namespace tarnix::x11
