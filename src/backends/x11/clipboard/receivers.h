#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "backends/x11/clipboard/transfer.h"
#include "backends/x11/clipboard/uri_list.h"
#include "backends/x11/text/text_decoder.h"

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
// the target that was asked for, whose encoding is given, or one of the types that stand for text; what is
// taken as it is may have any type.
class TextReceiver : public Receiver {
 public:
  TextReceiver(const Atoms& atoms, xcb_atom_t target, TextEncoding encoding)
      : atoms_(atoms), target_(target), encodingOfTarget_(encoding) {}
  bool begin(xcb_atom_t type, int format, std::size_t size) override;
  void append(std::string_view bytes) override;
  // Absent when nothing came, or nothing that can be read.
  std::optional<String> take();
  // After `take()`: see `TextDecoder`.
  bool isGuess() const { return decoder_ && decoder_->isGuess(); }

 private:
  std::optional<TextEncoding> encodingOf(xcb_atom_t type) const;

  const Atoms& atoms_;
  xcb_atom_t target_;
  TextEncoding encodingOfTarget_;
  std::optional<TextDecoder> decoder_;
};

// A list of files, read as it arrives.
class UriListReceiver : public Receiver {
 public:
  UriListReceiver(const Atoms& atoms, xcb_atom_t target, UriListReader::Form form)
      : atoms_(atoms), target_(target), reader_(form) {}
  bool begin(xcb_atom_t type, int format, std::size_t size) override;
  void append(std::string_view bytes) override { reader_.append(bytes); }
  UriList take() { return reader_.finish(); }

 private:
  const Atoms& atoms_;
  xcb_atom_t target_;
  UriListReader reader_;
};

}  // namespace tarnix::x11
