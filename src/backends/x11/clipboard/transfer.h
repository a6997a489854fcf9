#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string_view>

#include "backends/x11/clipboard/requestor.h"
#include "platform/foundation/run_loop.h"

namespace tarnix::x11 {

// How long an owner is waited for. Nothing is blocked meanwhile, and a new owner ends the wait.
struct FetchLimits {
  RunLoop::Duration answer = std::chrono::seconds(8);  // For each of its steps.
  RunLoop::Duration whole = std::chrono::seconds(30);  // For all of them, beside what it delivers.
};

// How long an owner may take in all: a fixed time, and more for what it delivers, so that large contents
// arrive whole and drips come to an end.
class Patience {
 public:
  Patience(RunLoop::Instant start, RunLoop::Duration limit) : end_(start + limit) {}
  void noteBytes(std::size_t count) { bytes_ += count; }
  RunLoop::Instant end() const;

 private:
  RunLoop::Instant end_;
  std::uint64_t bytes_ = 0;
};

// Takes in what one transfer delivers.
class Receiver {
 public:
  virtual ~Receiver() = default;
  // Called once, before any bytes. False when content of this type, and format in bits, is of no use; the
  // transfer then fails. The size is what the owner says, and may be anything.
  virtual bool begin(xcb_atom_t type, int format, std::size_t size) = 0;
  virtual void append(std::string_view bytes) = 0;
};

// One conversion of the clipboard into one target, whole or in increments (ICCCM, sections 2.4 and 2.7.2).
// Dropping it abandons the conversion; the owner is then let run out in the background.
class Transfer : private Requestor::User {
 public:
  enum class Outcome { complete, refused, timedOut, tooLarge, failed };
  struct Question {
    xcb_atom_t target = XCB_ATOM_NONE;
    xcb_timestamp_t time = XCB_CURRENT_TIME;
    RunLoop::Duration idleLimit{};  // For each step of the owner.
    std::size_t byteLimit = 0;
  };
  using Finished = std::function<void(Outcome)>;

  // Asks at once. The first three are borrowed for the time of the transfer. `finished` is called once,
  // later, and may drop the transfer.
  Transfer(Requestor& requestor, Patience& patience, Receiver& receiver, const Question& question,
           Finished finished);
  Transfer(const Transfer&) = delete;
  Transfer& operator=(const Transfer&) = delete;
  ~Transfer() override;

 private:
  enum class Step { awaitingAnswer, readingHead, reading, awaitingIncrement, over };

  void answered(const xcb_selection_notify_event_t& answer) override;
  void written() override;
  void read(std::uint32_t offset, std::uint32_t length, bool deletes);
  void takeHead(const xcb_get_property_reply_t& head);
  void beginIncrements();
  void takeSlice(const xcb_get_property_reply_t& slice);
  bool begin(xcb_atom_t type, int format, std::size_t size);
  bool takeBytes(std::string_view bytes);
  void awaitIncrement();
  void noteProgress();
  void watchClock();
  void checkClock();
  void finish(Outcome outcome);
  Requestor::Remainder remainder() const;
  void giveBack(Requestor::Remainder remainder);

  Requestor& requestor_;
  Patience& patience_;
  Receiver& receiver_;
  Question question_;
  Finished finished_;
  Requestor::Place place_;
  Step step_ = Step::awaitingAnswer;
  bool isIncremental_ = false;
  bool isIncrementWaiting_ = false;  // Written while the one before was still being read.
  bool hasBegun_ = false;
  bool hadGrace_ = false;
  xcb_atom_t type_ = XCB_ATOM_NONE;
  int format_ = 0;
  std::uint32_t offset_ = 0;  // Within the property, in units of four bytes.
  std::size_t received_ = 0;
  RunLoop::Instant lastProgress_{};
  Connection::Subscription reply_;
  RunLoop::Subscription clock_;
};

}  // namespace tarnix::x11
