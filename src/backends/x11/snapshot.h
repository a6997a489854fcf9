#pragma once

#include <deque>
#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "backends/x11/atom_names.h"
#include "backends/x11/receivers.h"
#include "backends/x11/requestor.h"
#include "backends/x11/transfer.h"
#include "platform/foundation/string.h"

namespace tarnix::x11 {

// What is fetched of the clipboard's content at one moment.
struct Content {
  // Marked as a secret by its owner, in which case nothing was read.
  bool isSecret = false;
  // What the owner offers, in its order; at most 256, without those that have no usable name.
  std::vector<String> targets;
  // Absent where not offered, or not delivered within the limits.
  std::optional<String> text;
  std::optional<String> rtf;
  std::optional<String> uriList;
  std::optional<String> copiedFiles;
  std::optional<String> source;
};

// Fetches the content from the present owner, one representation after the other and each at most once: the
// list of targets, the mark of a secret, and what this program reads. Asks for nothing else, since some
// targets have side effects and others are costly to make. Dropping it abandons the fetch.
class Snapshot {
 public:
  using Finished = std::function<void(Content)>;
  // Texts above this size are not taken.
  static constexpr std::size_t kByteLimit = std::size_t{256} << 20;

  // Begins at once. `time` is when the owner took the clipboard, if known. `finished` is called once, later,
  // and may drop the snapshot.
  Snapshot(Requestor& requestor, AtomNames& names, xcb_timestamp_t time, Finished finished);
  Snapshot(const Snapshot&) = delete;
  Snapshot& operator=(const Snapshot&) = delete;
  ~Snapshot();

 private:
  using Field = std::optional<String> Content::*;
  // The targets that a field can be filled from, the best first.
  struct Wish {
    Field field;
    std::deque<xcb_atom_t> candidates;
  };

  xcb_atom_t atom(std::string_view name) const;
  void askForTargets();
  void takeTargets(Transfer::Outcome outcome);
  void takeNames(const std::vector<String>& names);
  void askWithoutTargets();
  void askForSecret();
  void takeSecret(Transfer::Outcome outcome);
  void makeWishes();
  void addWish(Field field, std::initializer_list<std::string_view> targets);
  void fetchNext();
  std::size_t byteLimit(Field field) const;
  void takeAnswer(Transfer::Outcome outcome);
  void finish();

  Requestor& requestor_;
  AtomNames& names_;
  xcb_timestamp_t time_;
  Finished finished_;
  Patience patience_;
  Content content_;
  std::vector<xcb_atom_t> offered_;
  std::deque<Wish> wishes_;
  std::optional<AtomListReceiver> atomList_;
  std::optional<TextReceiver> text_;
  std::unique_ptr<Transfer> transfer_;
};

}  // namespace tarnix::x11
