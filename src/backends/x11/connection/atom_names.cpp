#include "backends/x11/connection/atom_names.h"

#include <utility>

namespace tarnix::x11 {
namespace {

constexpr std::size_t kMostNames = 4096;
constexpr int kLongestName = 255;

String nameIn(const xcb_get_atom_name_reply_t& reply) {
  const int length = xcb_get_atom_name_name_length(&reply);
  if (length > kLongestName) return {};
  return String(std::string_view(xcb_get_atom_name_name(&reply), static_cast<std::size_t>(length)));
}

}  // namespace

void AtomNames::find(std::vector<xcb_atom_t> atoms, Found found) {
  waiting_.clear();
  if (names_.size() >= kMostNames) names_.clear();
  atoms_ = std::move(atoms);
  found_ = std::move(found);
  for (const xcb_atom_t atom : atoms_) {
    if (!names_.contains(atom)) ask(atom);
  }
  answerIfComplete();
}

void AtomNames::ask(xcb_atom_t atom) {
  if (const std::string_view known = connection_->atoms().nameOf(atom); !known.empty()) {
    names_.emplace(atom, String(known));
    return;
  }
  const auto cookie = xcb_get_atom_name(connection_->xcb(), atom);
  waiting_[atom] = connection_->onReply<xcb_get_atom_name_reply_t>(cookie, [this, atom](auto reply) {
    // An atom that does not exist may do so later.
    if (reply) names_.insert_or_assign(atom, nameIn(*reply));
    waiting_.erase(atom);
    answerIfComplete();
  });
}

void AtomNames::answerIfComplete() {
  if (!waiting_.empty()) return;
  std::vector<String> names;
  for (const xcb_atom_t atom : atoms_) {
    const auto known = names_.find(atom);
    names.push_back(known == names_.end() ? String() : known->second);
  }
  if (const Found found = std::exchange(found_, nullptr)) found(std::move(names));
}

}  // namespace tarnix::x11
