#pragma once

#include <chrono>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "support/owner_client.h"
#include "support/owner_script.h"

namespace tarnix::test {

// Owns the clipboard selection and does what its script says.
class ScriptedOwner {
 public:
  ScriptedOwner(OwnerClient& client, OwnerScript script);
  // Returns when the selection is lost and nothing is under way, when the time is up, or when the display is
  // gone.
  void run();

 private:
  using Clock = std::chrono::steady_clock;
  using Request = xcb_selection_request_event_t;

  struct Postponed {
    Clock::time_point due;
    Request request;
  };
  // A text that goes out in pieces. A piece is due once the one before it was taken away.
  struct Transfer {
    Request request{};
    std::shared_ptr<const std::string> bytes;
    std::size_t sent = 0;
    std::size_t chunks = 0;
    std::optional<Clock::time_point> due;
    Clock::time_point lastProgress;
    bool isDone = false;
  };

  void takeSelection();
  void copyAgainWhenDue();
  void setCopyNumber(int number);
  void handle(const xcb_generic_event_t& event);
  void receive(const Request& request);
  void answer(const Request& request);
  void answerTargets(const Request& request);
  void answerData(const Request& request, const Representation& representation);
  void startTransfer(const Request& request, std::shared_ptr<const std::string> bytes);
  void pieceTaken(const xcb_property_notify_event_t& change);
  void sendPiece(Transfer& transfer);
  void doWhatIsDue();
  bool isOver() const;
  std::chrono::milliseconds patience() const;

  const Representation* representationFor(const std::string& target) const;
  std::vector<xcb_atom_t> offeredTargets();
  xcb_atom_t typeFor(const Request& request);
  [[noreturn]] void die();

  OwnerClient& client_;
  OwnerScript script_;
  std::shared_ptr<const std::string> lastText_;
  std::vector<xcb_atom_t> oddTargets_;
  xcb_timestamp_t acquired_ = XCB_CURRENT_TIME;
  int copiesMade_ = 0;
  Clock::time_point nextCopy_;
  Clock::time_point end_;
  bool isLost_ = false;
  std::deque<Postponed> postponed_;
  std::deque<Transfer> transfers_;
};

}  // namespace tarnix::test
