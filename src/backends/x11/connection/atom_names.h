#pragma once

#include <xcb/xproto.h>

#include <functional>
#include <memory>
#include <unordered_map>
#include <vector>

#include "backends/x11/connection/connection.h"
#include "platform/foundation/string.h"

namespace tarnix::x11 {

// The names of atoms that other programs chose, asked of the server once each. Names are bytes, not text.
class AtomNames {
 public:
  using Found = std::function<void(std::vector<String>)>;

  explicit AtomNames(std::shared_ptr<Connection> connection) : connection_(std::move(connection)) {}

  // Gives the names in the order of the atoms, at once when all are known, else in a later turn. An atom that
  // does not exist, and one whose name is longer than 255 bytes, has the empty name. A second call forgets
  // the first.
  void find(std::vector<xcb_atom_t> atoms, Found found);
  void forget() {
    waiting_.clear();
    found_ = nullptr;
  }

 private:
  void ask(xcb_atom_t atom);
  void answerIfComplete();

  std::shared_ptr<Connection> connection_;
  std::unordered_map<xcb_atom_t, String> names_;
  std::vector<xcb_atom_t> atoms_;
  Found found_;
  std::unordered_map<xcb_atom_t, Connection::Subscription> waiting_;
};

}  // namespace tarnix::x11
