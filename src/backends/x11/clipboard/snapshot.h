#pragma once

#include <deque>
#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "backends/x11/clipboard/receivers.h"
#include "backends/x11/clipboard/requestor.h"
#include "backends/x11/clipboard/transfer.h"
#include "backends/x11/clipboard/uri_list.h"
#include "backends/x11/connection/atom_names.h"
#include "platform/foundation/string.h"

namespace tarnix::x11 {

// What is fetched of the clipboard's content at one moment.
struct Content {
  // Marked as a secret by its owner, in which case nothing was read. So is content whose list of targets was
  // not to be had, since the mark could be in it.
  bool isSecret = false;
  // What the owner offers, in its order, without those that have no usable name; at most 256 beside those
  // that this program knows.
  std::vector<String> targets;
  // Absent where not offered, or not delivered within the limits.
  std::optional<String> text;
  std::optional<String> rtf;
  bool isRtfMade = false;      // Of what is offered, which it is not itself.
  std::optional<String> html;  // Its bytes, whatever they encode. Asked for only where no RTF is offered.
  std::optional<UriList> files;
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
  Snapshot(Requestor& requestor, AtomNames& names, xcb_timestamp_t time, const FetchLimits& limits,
           Finished finished);
  Snapshot(const Snapshot&) = delete;
  Snapshot& operator=(const Snapshot&) = delete;
  ~Snapshot();

 private:
  using Field = std::optional<String> Content::*;
  struct Candidate {
    xcb_atom_t target = XCB_ATOM_NONE;
    TextEncoding encoding = TextEncoding::utf8;
  };
  // The targets that a field can be filled from, the best first. No field stands for the files.
  struct Wish {
    Field field;
    std::deque<Candidate> candidates;
  };

  static std::size_t byteLimitOf(Field field);
  xcb_atom_t atom(std::string_view name) const;
  void askForTargets();
  void takeTargets(Transfer::Outcome outcome);
  void askWithoutTargets();
  void askForSecret();
  void takeSecret(Transfer::Outcome outcome);
  void askForNames();
  void takeNames(const std::vector<xcb_atom_t>& atoms, const std::vector<String>& names);
  bool isOffered(std::string_view target) const;
  void addTextWish(const std::vector<xcb_atom_t>& atoms, const std::vector<String>& names);
  void addWish(Field field, std::initializer_list<std::string_view> targets, TextEncoding encoding);
  void fetchNext();
  void fetch(Receiver& receiver, const Transfer::Question& question,
             void (Snapshot::*take)(Transfer::Outcome));
  void takeText(Transfer::Outcome outcome);
  void takeFiles(Transfer::Outcome outcome);
  void goOn(Transfer::Outcome outcome, bool isFilled);
  void finishUnread();
  void finish();

  Requestor& requestor_;
  AtomNames& names_;
  xcb_timestamp_t time_;
  FetchLimits limits_;
  Finished finished_;
  Patience patience_;
  Content content_;
  std::vector<xcb_atom_t> offered_;
  std::deque<Wish> wishes_;
  std::optional<AtomListReceiver> atomList_;
  std::optional<TextReceiver> text_;
  std::optional<UriListReceiver> files_;
  std::unique_ptr<Transfer> transfer_;
};

}  // namespace tarnix::x11
