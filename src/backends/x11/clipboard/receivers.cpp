#include "backends/x11/clipboard/receivers.h"

#include <algorithm>
#include <cstring>
#include <unordered_set>

#include "backends/x11/text/text_targets.h"

namespace tarnix::x11 {
namespace {

// A size that an owner only announces is not worth more than this before the bytes are there.
constexpr std::size_t kMostReserved = std::size_t{256} << 20;

}  // namespace

bool AtomListReceiver::begin(xcb_atom_t type, int format, std::size_t /*size*/) {
  // Some owners answer with the type TARGETS.
  return format == 32 && (type == XCB_ATOM_ATOM || type == atoms_["TARGETS"]);
}

std::vector<xcb_atom_t> AtomListReceiver::take() const {
  std::vector<xcb_atom_t> list;
  std::unordered_set<xcb_atom_t> known;
  for (std::size_t at = 0; at + sizeof(xcb_atom_t) <= bytes_.size(); at += sizeof(xcb_atom_t)) {
    xcb_atom_t atom = XCB_ATOM_NONE;
    std::memcpy(&atom, bytes_.data() + at, sizeof atom);
    if (atom != XCB_ATOM_NONE && known.insert(atom).second) list.push_back(atom);
  }
  return list;
}

bool TextReceiver::begin(xcb_atom_t type, int format, std::size_t size) {
  const std::optional<TextEncoding> encoding = encodingOf(type);
  if (format != 8 || !encoding) return false;
  decoder_.emplace(*encoding);
  decoder_->reserve(std::min(size, kMostReserved));
  return true;
}

void TextReceiver::append(std::string_view bytes) {
  if (decoder_) decoder_->append(bytes);
}

std::optional<String> TextReceiver::take() { return decoder_ ? decoder_->finish() : std::nullopt; }

std::optional<TextEncoding> TextReceiver::encodingOf(xcb_atom_t type) const {
  if (type == target_ || encodingOfTarget_ == TextEncoding::asItIs) return encodingOfTarget_;
  const auto known = textTargetOf(atoms_.nameOf(type));
  return known ? std::optional(known->encoding) : std::nullopt;
}

bool UriListReceiver::begin(xcb_atom_t type, int format, std::size_t /*size*/) {
  const bool isText = type == target_ || textTargetOf(atoms_.nameOf(type)).has_value();
  return format == 8 && isText;
}

}  // namespace tarnix::x11
