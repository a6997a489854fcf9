#include "backends/x11/snapshot.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace tarnix::x11 {
namespace {

using namespace std::chrono_literals;
using Outcome = Transfer::Outcome;

constexpr RunLoop::Duration kIdleLimit = 1s;
constexpr RunLoop::Duration kSecretIdleLimit = 250ms;
constexpr std::size_t kMostTargets = 256;
constexpr std::size_t kHintLimit = 64;
constexpr std::size_t kSourceLimit = 4096;
// Lists of files are read in one go once they are here.
constexpr std::size_t kFilesLimit = std::size_t{2} << 20;

}  // namespace

Snapshot::Snapshot(Requestor& requestor, AtomNames& names, xcb_timestamp_t time, Finished finished)
    : requestor_(requestor),
      names_(names),
      time_(time),
      finished_(std::move(finished)),
      patience_(requestor.connection().loop().now()) {
  askForTargets();
}

Snapshot::~Snapshot() { names_.forget(); }

xcb_atom_t Snapshot::atom(std::string_view name) const { return requestor_.connection().atoms()[name]; }

void Snapshot::askForTargets() {
  atomList_.emplace(requestor_.connection().atoms());
  transfer_ = std::make_unique<Transfer>(requestor_, patience_, *atomList_,
                                         Transfer::Question{.target = atom("TARGETS"),
                                                            .time = time_,
                                                            .idleLimit = kIdleLimit,
                                                            .byteLimit = kMostTargets * sizeof(xcb_atom_t),
                                                            .isPrefixEnough = true},
                                         [this](Outcome outcome) { takeTargets(outcome); });
}

void Snapshot::takeTargets(Outcome outcome) {
  offered_ = atomList_->take();
  if (outcome == Outcome::refused && time_ != XCB_CURRENT_TIME) {
    // Owners that compare times wrongly still answer to this one.
    time_ = XCB_CURRENT_TIME;
    return askForTargets();
  }
  if (outcome != Outcome::complete) return askWithoutTargets();
  names_.find(offered_, [this](const std::vector<String>& names) { takeNames(names); });
}

// Programs that know nothing of TARGETS offer text, if anything.
void Snapshot::askWithoutTargets() {
  offered_ = {atom("UTF8_STRING"), XCB_ATOM_STRING};
  wishes_.push_back({&Content::text, {offered_.begin(), offered_.end()}});
  fetchNext();
}

void Snapshot::takeNames(const std::vector<String>& names) {
  for (const String& name : names) {
    if (!name.empty()) content_.targets.push_back(name);
  }
  const xcb_atom_t hint = atom("x-kde-passwordManagerHint");
  const bool isHinted = std::find(offered_.begin(), offered_.end(), hint) != offered_.end();
  isHinted ? askForSecret() : makeWishes();
}

void Snapshot::askForSecret() {
  const xcb_atom_t hint = atom("x-kde-passwordManagerHint");
  text_.emplace(requestor_.connection().atoms(), hint);
  transfer_ = std::make_unique<Transfer>(
      requestor_, patience_, *text_,
      Transfer::Question{
          .target = hint, .time = time_, .idleLimit = kSecretIdleLimit, .byteLimit = kHintLimit},
      [this](Outcome outcome) { takeSecret(outcome); });
}

// An owner that can't say that its content is no secret is taken at the word of its offer.
void Snapshot::takeSecret(Outcome outcome) {
  const std::optional<String> hint = text_->take();
  content_.isSecret = outcome != Outcome::complete || !hint || hint->view() != "public";
  if (!content_.isSecret) return makeWishes();
  content_.targets.clear();
  finish();
}

void Snapshot::makeWishes() {
  addWish(&Content::text, {"text/plain;charset=utf-8", "UTF8_STRING", "text/plain;charset=UTF-8",
                           "text/plain", "TEXT", "STRING", "text/plain;charset=utf-16", "COMPOUND_TEXT"});
  addWish(&Content::uriList, {"text/uri-list"});
  const bool hasUriList = !wishes_.empty() && wishes_.back().field == &Content::uriList;
  if (!hasUriList) addWish(&Content::copiedFiles, {"x-special/gnome-copied-files"});
  addWish(&Content::rtf, {"text/rtf", "application/rtf", "text/richtext"});
  addWish(&Content::source, {"org.nspasteboard.source"});
  fetchNext();
}

void Snapshot::addWish(Field field, std::initializer_list<std::string_view> targets) {
  std::deque<xcb_atom_t> candidates;
  for (const std::string_view target : targets) {
    const bool isOffered = std::find(offered_.begin(), offered_.end(), atom(target)) != offered_.end();
    if (isOffered) candidates.push_back(atom(target));
  }
  if (!candidates.empty()) wishes_.push_back({field, std::move(candidates)});
}

void Snapshot::fetchNext() {
  if (wishes_.empty()) return finish();
  Wish& wish = wishes_.front();
  const xcb_atom_t target = wish.candidates.front();
  wish.candidates.pop_front();
  text_.emplace(requestor_.connection().atoms(), target);
  transfer_ = std::make_unique<Transfer>(
      requestor_, patience_, *text_,
      Transfer::Question{
          .target = target, .time = time_, .idleLimit = kIdleLimit, .byteLimit = byteLimit(wish.field)},
      [this](Outcome outcome) { takeAnswer(outcome); });
}

std::size_t Snapshot::byteLimit(Field field) const {
  if (field == &Content::source) return kSourceLimit;
  return field == &Content::text || field == &Content::rtf ? kByteLimit : kFilesLimit;
}

void Snapshot::takeAnswer(Outcome outcome) {
  Wish& wish = wishes_.front();
  const bool isOffered = !content_.targets.empty();
  std::optional<String> text = outcome == Outcome::complete ? text_->take() : std::nullopt;
  if (text && wish.field == &Content::rtf && !text->hasPrefix("{\\rtf")) text.reset();
  if (text && !isOffered) content_.targets = {"UTF8_STRING"};
  const bool isOver = text.has_value() || wish.candidates.empty();
  content_.*wish.field = std::move(text);
  // Who does not answer once in time will not answer at all.
  if (outcome == Outcome::timedOut) return finish();
  if (isOver) wishes_.pop_front();
  fetchNext();
}

void Snapshot::finish() {
  const Finished finished = std::move(finished_);
  finished(std::move(content_));
}

}  // namespace tarnix::x11
