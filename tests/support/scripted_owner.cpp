#include "support/scripted_owner.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <optional>

namespace tarnix::test {
namespace {

using std::chrono::milliseconds;
using Conduct = OwnerScript::Conduct;
using OddTargets = OwnerScript::OddTargets;

constexpr milliseconds kLongestWait{1000};
constexpr std::chrono::seconds kTransferPatience{10};

void say(const std::string& line) {
  std::printf("%s\n", line.c_str());
  std::fflush(stdout);
}

template <typename T>
T as(const xcb_generic_event_t& event) {
  T typed;
  std::memcpy(&typed, &event, sizeof typed);
  return typed;
}

std::vector<xcb_atom_t> makeOddTargets(OwnerClient& client, const OwnerScript& script) {
  static constexpr std::size_t kLongestName = 65535;
  std::vector<std::string> names;
  switch (script.oddTargets) {
    case OddTargets::none:
      return {};
    case OddTargets::invalid:
      return {0, 0x1fffffff, 0xffffffff, 0xdeadbeef, 0x00ffffff};
    case OddTargets::many:
      for (std::size_t i = 0; i < script.oddTargetCount; ++i) names.push_back("x-test/" + std::to_string(i));
      break;
    case OddTargets::longNames:
      for (char letter = 'a'; letter <= 'h'; ++letter) names.emplace_back(kLongestName, letter);
      break;
  }
  return client.atoms(names);
}

}  // namespace

ScriptedOwner::ScriptedOwner(OwnerClient& client, OwnerScript script)
    : client_(client), script_(std::move(script)), oddTargets_(makeOddTargets(client_, script_)) {
  if (!script_.representations.empty()) lastText_ = script_.representations.front().bytes;
  end_ = Clock::now() + script_.timeLimit;
}

void ScriptedOwner::run() {
  if (!script_.windowClass.empty()) client_.showWindow(script_.windowClass);
  takeSelection();
  while (!isOver()) {
    if (const Event event = client_.nextEvent(patience())) handle(*event);
    doWhatIsDue();
  }
}

void ScriptedOwner::takeSelection() {
  acquired_ = script_.copies == 1 ? client_.serverTime() : XCB_CURRENT_TIME;
  nextCopy_ = Clock::now();
  copyAgainWhenDue();
}

// Copies that are due at once leave together, without a look at what others want in between.
void ScriptedOwner::copyAgainWhenDue() {
  const xcb_atom_t clipboard = client_.atom("CLIPBOARD");
  while (copiesMade_ < script_.copies && nextCopy_ <= Clock::now()) {
    setCopyNumber(++copiesMade_);
    xcb_set_selection_owner(client_.connection(), client_.window(), clipboard, acquired_);
    nextCopy_ += script_.copyInterval;
    if (copiesMade_ == script_.copies) say(client_.ownsClipboard() ? "owner" : "refused");
  }
}

void ScriptedOwner::setCopyNumber(int number) {
  if (script_.copies == 1 || script_.representations.empty()) return;
  auto& bytes = script_.representations.front().bytes;
  const bool isLast = number == script_.copies;
  bytes = isLast ? lastText_ : std::make_shared<const std::string>(*lastText_ + " " + std::to_string(number));
}

void ScriptedOwner::handle(const xcb_generic_event_t& event) {
  switch (event.response_type & 0x7f) {
    case XCB_SELECTION_REQUEST:
      return receive(as<Request>(event));
    case XCB_PROPERTY_NOTIFY:
      return pieceTaken(as<xcb_property_notify_event_t>(event));
    case XCB_SELECTION_CLEAR:
      isLost_ = true;
      return say("cleared");
  }
}

void ScriptedOwner::receive(const Request& request) {
  say("request " + client_.nameOf(request.target));
  if (script_.answerDelay.count() == 0) return answer(request);
  postponed_.push_back({Clock::now() + script_.answerDelay, request});
}

void ScriptedOwner::answer(const Request& request) {
  const std::string target = client_.nameOf(request.target);
  const bool asksForTargets = target == "TARGETS";
  const Conduct conduct = asksForTargets ? script_.onTargets : script_.onData;
  if (conduct == Conduct::die) die();
  if (conduct == Conduct::ignore) return;
  if (asksForTargets) return answerTargets(request);
  if (target == "TIMESTAMP") {
    client_.setProperty(request.requestor, request.property, XCB_ATOM_INTEGER, std::span(&acquired_, 1));
    return client_.notify(request, request.property);
  }
  const Representation* representation = representationFor(target);
  if (representation == nullptr) return client_.notify(request, XCB_ATOM_NONE);
  answerData(request, *representation);
}

void ScriptedOwner::answerTargets(const Request& request) {
  const xcb_atom_t type = script_.isTargetsTypeHonest ? XCB_ATOM_ATOM : XCB_ATOM_STRING;
  const std::vector<xcb_atom_t> offered = offeredTargets();
  if (script_.isTargetsTypeHonest) {
    client_.setProperty(request.requestor, request.property, type, offered);
  } else {
    client_.setProperty(request.requestor, request.property, type, "UTF8_STRING");
  }
  client_.notify(request, request.property);
}

void ScriptedOwner::answerData(const Request& request, const Representation& representation) {
  const bool isHint = representation.targets.front() == "x-kde-passwordManagerHint";
  if (script_.isSecret && !isHint) say("leaked " + client_.nameOf(request.target));
  if (representation.bytes->size() > script_.incrementalAbove) {
    return startTransfer(request, representation.bytes);
  }
  client_.setProperty(request.requestor, request.property, typeFor(request), *representation.bytes,
                      script_.dataFormat);
  client_.notify(request, request.property);
}

void ScriptedOwner::startTransfer(const Request& request, std::shared_ptr<const std::string> bytes) {
  const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
  xcb_change_window_attributes(client_.connection(), request.requestor, XCB_CW_EVENT_MASK, &events);
  const auto length = static_cast<std::uint32_t>(bytes->size());
  client_.setProperty(request.requestor, request.property, client_.atom("INCR"), std::span(&length, 1));
  client_.notify(request, request.property);
  Transfer& transfer = transfers_.emplace_back();
  transfer.request = request;
  transfer.bytes = std::move(bytes);
  transfer.lastProgress = Clock::now();
}

void ScriptedOwner::pieceTaken(const xcb_property_notify_event_t& change) {
  if (change.state != XCB_PROPERTY_DELETE) return;
  for (Transfer& transfer : transfers_) {
    if (transfer.request.requestor != change.window || transfer.request.property != change.atom) continue;
    if (transfer.isDone || transfer.due) continue;
    transfer.due = Clock::now() + (transfer.chunks == 0 ? milliseconds(0) : script_.chunkDelay);
    transfer.lastProgress = Clock::now();
    return;
  }
}

// The piece after the last one is empty and ends the transfer.
void ScriptedOwner::sendPiece(Transfer& transfer) {
  transfer.due.reset();
  if (transfer.chunks == script_.chunksToSend) {
    if (script_.afterLastChunk == Conduct::die) die();
    return;
  }
  const auto piece = std::string_view(*transfer.bytes).substr(transfer.sent, script_.chunkSize);
  client_.setProperty(transfer.request.requestor, transfer.request.property, typeFor(transfer.request), piece,
                      script_.dataFormat);
  transfer.sent += piece.size();
  ++transfer.chunks;
  transfer.isDone = piece.empty();
}

void ScriptedOwner::doWhatIsDue() {
  const auto now = Clock::now();
  copyAgainWhenDue();
  for (; !postponed_.empty() && postponed_.front().due <= now; postponed_.pop_front()) {
    answer(postponed_.front().request);
  }
  for (Transfer& transfer : transfers_) {
    if (transfer.due && *transfer.due <= now) sendPiece(transfer);
  }
  std::erase_if(transfers_, [now](const Transfer& transfer) {
    return transfer.isDone || now - transfer.lastProgress > kTransferPatience;
  });
}

bool ScriptedOwner::isOver() const {
  if (client_.isGone() || Clock::now() >= end_) return true;
  return isLost_ && !script_.outlivesLoss && transfers_.empty() && postponed_.empty();
}

milliseconds ScriptedOwner::patience() const {
  auto next = std::min(end_, Clock::now() + kLongestWait);
  if (copiesMade_ < script_.copies) next = std::min(next, nextCopy_);
  if (!postponed_.empty()) next = std::min(next, postponed_.front().due);
  for (const Transfer& transfer : transfers_) {
    if (transfer.due) next = std::min(next, *transfer.due);
  }
  return std::chrono::ceil<milliseconds>(std::max(next - Clock::now(), Clock::duration::zero()));
}

const Representation* ScriptedOwner::representationFor(const std::string& target) const {
  const auto offers = [&](const Representation& representation) {
    return std::ranges::find(representation.targets, target) != representation.targets.end();
  };
  const auto found = std::ranges::find_if(script_.representations, offers);
  return found == script_.representations.end() ? nullptr : &*found;
}

std::vector<xcb_atom_t> ScriptedOwner::offeredTargets() {
  std::vector<std::string> names = {"TARGETS", "TIMESTAMP"};
  for (const Representation& representation : script_.representations) {
    names.insert(names.end(), representation.targets.begin(), representation.targets.end());
  }
  std::vector<xcb_atom_t> offered = client_.atoms(names);
  offered.insert(offered.end(), oddTargets_.begin(), oddTargets_.end());
  return offered;
}

xcb_atom_t ScriptedOwner::typeFor(const Request& request) {
  if (!script_.isDataTypeHonest) return XCB_ATOM_PIXMAP;
  const xcb_atom_t text = client_.atom("TEXT");
  return request.target == text ? client_.atom("UTF8_STRING") : request.target;
}

void ScriptedOwner::die() {
  say("died");
  _exit(0);
}

}  // namespace tarnix::test
