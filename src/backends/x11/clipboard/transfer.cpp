#include "backends/x11/clipboard/transfer.h"

#include <algorithm>
#include <chrono>

namespace tarnix::x11 {
namespace {

using namespace std::chrono_literals;

// An owner that delivers slower than this is not waited for beyond its fixed time.
constexpr std::uint64_t kLeastBytesPerSecond = 1 << 20;
constexpr RunLoop::Duration kGrace = 20ms;
constexpr std::uint32_t kSliceUnits = (1 << 20) / 4;

std::string_view bytesOf(const xcb_get_property_reply_t& reply) {
  return {static_cast<const char*>(xcb_get_property_value(&reply)),
          static_cast<std::size_t>(xcb_get_property_value_length(&reply))};
}

}  // namespace

RunLoop::Instant Patience::end() const {
  const std::uint64_t milliseconds = bytes_ * 1000 / kLeastBytesPerSecond;
  return end_ + std::chrono::milliseconds(milliseconds);
}

Transfer::Transfer(Requestor& requestor, Patience& patience, Receiver& receiver, const Question& question,
                   Finished finished)
    : requestor_(requestor),
      patience_(patience),
      receiver_(receiver),
      question_(question),
      finished_(std::move(finished)),
      place_(requestor.take(*this)) {
  Connection& connection = requestor_.connection();
  xcb_convert_selection(connection.xcb(), place_.window, connection.atoms()["CLIPBOARD"], question_.target,
                        place_.property, question_.time);
  connection.flushSoon();
  lastProgress_ = connection.loop().now();
  watchClock();
}

Transfer::~Transfer() { giveBack(remainder()); }

void Transfer::answered(const xcb_selection_notify_event_t& answer) {
  if (step_ != Step::awaitingAnswer || answer.target != question_.target) return;
  if (answer.property == XCB_ATOM_NONE) return finish(Outcome::refused);
  noteProgress();
  step_ = Step::readingHead;
  read(0, 0, false);
}

void Transfer::written() {
  // Before the answer this is the value that the answer is about.
  if (!isIncremental_) return;
  isIncrementWaiting_ = true;
  if (step_ != Step::awaitingIncrement) return;
  noteProgress();
  isIncrementWaiting_ = false;
  step_ = Step::reading;
  offset_ = 0;
  read(0, kSliceUnits, true);
}

void Transfer::read(std::uint32_t offset, std::uint32_t length, bool deletes) {
  Connection& connection = requestor_.connection();
  const auto cookie = xcb_get_property(connection.xcb(), deletes ? 1 : 0, place_.window, place_.property,
                                       XCB_GET_PROPERTY_TYPE_ANY, offset, length);
  reply_ =
      connection.onReply<xcb_get_property_reply_t>(cookie, [this](Owned<xcb_get_property_reply_t> reply) {
        if (!reply) return finish(Outcome::failed);
        step_ == Step::readingHead ? takeHead(*reply) : takeSlice(*reply);
      });
}

void Transfer::takeHead(const xcb_get_property_reply_t& head) {
  if (head.type == XCB_ATOM_NONE) return finish(Outcome::failed);
  if (head.type == requestor_.connection().atoms()["INCR"]) return beginIncrements();
  if (!begin(head.type, head.format, head.bytes_after)) return;
  step_ = Step::reading;
  read(0, kSliceUnits, true);
}

// Taking the announcement away tells the owner to begin.
void Transfer::beginIncrements() {
  isIncremental_ = true;
  step_ = Step::awaitingIncrement;
  xcb_delete_property(requestor_.connection().xcb(), place_.window, place_.property);
  requestor_.connection().flushSoon();
}

void Transfer::takeSlice(const xcb_get_property_reply_t& slice) {
  const bool isFirst = offset_ == 0;
  // Nothing was written after all; the owner still has to.
  if (isIncremental_ && isFirst && slice.type == XCB_ATOM_NONE) return awaitIncrement();
  const std::string_view bytes = bytesOf(slice);
  const bool isEnd = isIncremental_ && isFirst && bytes.empty() && slice.bytes_after == 0;
  if (!hasBegun_ && !begin(slice.type, slice.format, bytes.size() + slice.bytes_after)) return;
  if (!isEnd && (slice.type != type_ || slice.format != format_)) return finish(Outcome::failed);
  if (bytes.empty() && slice.bytes_after > 0) return finish(Outcome::failed);
  if (!takeBytes(bytes)) return;
  if (slice.bytes_after == 0) {
    // Reading the end has also taken the property away.
    return isIncremental_ && !isEnd ? awaitIncrement() : finish(Outcome::complete);
  }
  offset_ += slice.value_len * slice.format / 32;
  read(offset_, kSliceUnits, true);
}

bool Transfer::begin(xcb_atom_t type, int format, std::size_t size) {
  hasBegun_ = true;
  type_ = type;
  format_ = format;
  if (!receiver_.begin(type, format, size)) {
    finish(Outcome::failed);
    return false;
  }
  if (size <= question_.byteLimit) return true;
  finish(Outcome::tooLarge);
  return false;
}

// False when that was the end of the transfer.
bool Transfer::takeBytes(std::string_view bytes) {
  const std::size_t room = question_.byteLimit - received_;
  receiver_.append(bytes.substr(0, room));
  received_ += std::min(bytes.size(), room);
  patience_.noteBytes(bytes.size());
  noteProgress();
  if (bytes.size() <= room) return true;
  finish(Outcome::tooLarge);
  return false;
}

void Transfer::awaitIncrement() {
  step_ = Step::awaitingIncrement;
  if (isIncrementWaiting_) written();
}

void Transfer::noteProgress() { lastProgress_ = requestor_.connection().loop().now(); }

void Transfer::watchClock() {
  RunLoop& loop = requestor_.connection().loop();
  const RunLoop::Instant end = std::min(lastProgress_ + question_.idleLimit, patience_.end());
  clock_ = loop.scheduleOnce(std::max<RunLoop::Duration>(end - loop.now(), 0ns), [this] { checkClock(); });
}

void Transfer::checkClock() {
  RunLoop& loop = requestor_.connection().loop();
  const bool isIdle = loop.now() >= lastProgress_ + question_.idleLimit;
  if (!isIdle && loop.now() < patience_.end()) return watchClock();
  if (hadGrace_) return finish(Outcome::timedOut);
  // When it was this program that slept, the answer is there and only has to be read.
  hadGrace_ = true;
  clock_ = loop.scheduleOnce(kGrace, [this] { checkClock(); });
}

void Transfer::finish(Outcome outcome) {
  const bool isClean = outcome == Outcome::complete || outcome == Outcome::refused;
  giveBack(isClean ? Requestor::Remainder::nothing : remainder());
  reply_.cancel();
  clock_.cancel();
  const Finished finished = std::move(finished_);
  finished(outcome);
}

Requestor::Remainder Transfer::remainder() const {
  return step_ == Step::awaitingAnswer ? Requestor::Remainder::lateAnswer
                                       : Requestor::Remainder::restOfTransfer;
}

void Transfer::giveBack(Requestor::Remainder remainder) {
  if (step_ == Step::over) return;
  step_ = Step::over;
  requestor_.giveBack(*this, remainder);
}

}  // namespace tarnix::x11
