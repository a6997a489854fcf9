#include "backends/x11/clipboard/snapshot.h"

#include <algorithm>
#include <chrono>
#include <map>
#include <utility>

#include "backends/x11/text/text_targets.h"

namespace tarnix::x11 {
namespace {

using namespace std::chrono_literals;
using Outcome = Transfer::Outcome;

constexpr RunLoop::Duration kSecretIdleLimit = 250ms;
// As many as any program has been seen to offer, many times over.
constexpr std::size_t kMostTargets = 65'536;
constexpr std::size_t kMostUnknownNames = 256;
constexpr std::size_t kHintLimit = 64;
constexpr std::size_t kSourceLimit = 4096;
constexpr std::size_t kFilesLimit = std::size_t{32} << 20;
constexpr std::size_t kHtmlLimit = std::size_t{4} << 20;
constexpr std::string_view kHint = "x-kde-passwordManagerHint";
constexpr std::string_view kCopiedFiles = "x-special/gnome-copied-files";

}  // namespace

Snapshot::Snapshot(Requestor& requestor, AtomNames& names, xcb_timestamp_t time, const FetchLimits& limits,
                   Finished finished)
    : requestor_(requestor),
      names_(names),
      time_(time),
      limits_(limits),
      finished_(std::move(finished)),
      patience_(requestor.connection().loop().now(), limits.whole) {
  askForTargets();
}

Snapshot::~Snapshot() { names_.forget(); }

xcb_atom_t Snapshot::atom(std::string_view name) const { return requestor_.connection().atoms()[name]; }

void Snapshot::fetch(Receiver& receiver, const Transfer::Question& question,
                     void (Snapshot::*take)(Outcome)) {
  transfer_ = std::make_unique<Transfer>(requestor_, patience_, receiver, question,
                                         [this, take](Outcome outcome) { (this->*take)(outcome); });
}

void Snapshot::askForTargets() {
  atomList_.emplace(requestor_.connection().atoms());
  fetch(*atomList_,
        {.target = atom("TARGETS"),
         .time = time_,
         .idleLimit = limits_.answer,
         .byteLimit = kMostTargets * sizeof(xcb_atom_t)},
        &Snapshot::takeTargets);
}

void Snapshot::takeTargets(Outcome outcome) {
  if (outcome == Outcome::refused && time_ != XCB_CURRENT_TIME) {
    // Owners that compare times wrongly still answer to this one.
    time_ = XCB_CURRENT_TIME;
    return askForTargets();
  }
  if (outcome == Outcome::refused) return askWithoutTargets();
  if (outcome != Outcome::complete) return finishUnread();
  offered_ = atomList_->take();
  if (isOffered(kHint)) return askForSecret();
  askForNames();
}

// Programs that know nothing of TARGETS offer text, if anything, and have no mark for secrets.
void Snapshot::askWithoutTargets() {
  wishes_.push_back(
      {&Content::text, {{atom("UTF8_STRING"), TextEncoding::utf8}, {XCB_ATOM_STRING, TextEncoding::latin1}}});
  fetchNext();
}

void Snapshot::askForSecret() {
  text_.emplace(requestor_.connection().atoms(), atom(kHint), TextEncoding::utf8);
  fetch(*text_,
        {.target = atom(kHint), .time = time_, .idleLimit = kSecretIdleLimit, .byteLimit = kHintLimit},
        &Snapshot::takeSecret);
}

// An owner that can't say that its content is no secret is taken at the word of its offer.
void Snapshot::takeSecret(Outcome outcome) {
  const std::optional<String> hint = text_->take();
  const bool isPublic = outcome == Outcome::complete && hint && hint->view() == "public";
  if (isPublic) return askForNames();
  finishUnread();
}

// Those that are known here have their names already, wherever in the list they are.
void Snapshot::askForNames() {
  std::vector<xcb_atom_t> atoms;
  std::size_t unknown = 0;
  for (const xcb_atom_t each : offered_) {
    const bool isKnown = !requestor_.connection().atoms().nameOf(each).empty();
    if (isKnown || unknown++ < kMostUnknownNames) atoms.push_back(each);
  }
  names_.find(atoms, [this, atoms](const std::vector<String>& names) { takeNames(atoms, names); });
}

void Snapshot::takeNames(const std::vector<xcb_atom_t>& atoms, const std::vector<String>& names) {
  for (const String& name : names) {
    if (!name.empty()) content_.targets.push_back(name);
  }
  addTextWish(atoms, names);
  addWish(nullptr, {"text/uri-list", kCopiedFiles}, TextEncoding::utf8);
  const std::initializer_list<std::string_view> rtf = {"text/rtf", "application/rtf", "text/richtext"};
  const bool hasRtf =
      std::any_of(rtf.begin(), rtf.end(), [this](std::string_view target) { return isOffered(target); });
  addWish(&Content::rtf, rtf, TextEncoding::utf8OrLatin1);
  if (!hasRtf) addWish(&Content::html, {"text/html"}, TextEncoding::asItIs);
  addWish(&Content::source, {"org.nspasteboard.source"}, TextEncoding::utf8);
  fetchNext();
}

bool Snapshot::isOffered(std::string_view target) const {
  return std::find(offered_.begin(), offered_.end(), atom(target)) != offered_.end();
}

void Snapshot::addTextWish(const std::vector<xcb_atom_t>& atoms, const std::vector<String>& names) {
  std::multimap<int, Candidate> ranked;
  for (std::size_t i = 0; i < atoms.size(); ++i) {
    if (const auto target = textTargetOf(names[i]))
      ranked.insert({target->rank, {atoms[i], target->encoding}});
  }
  Wish wish{&Content::text, {}};
  for (const auto& [rank, candidate] : ranked) wish.candidates.push_back(candidate);
  if (!wish.candidates.empty()) wishes_.push_back(std::move(wish));
}

void Snapshot::addWish(Field field, std::initializer_list<std::string_view> targets, TextEncoding encoding) {
  Wish wish{field, {}};
  for (const std::string_view target : targets) {
    if (isOffered(target)) wish.candidates.push_back({atom(target), encoding});
  }
  if (!wish.candidates.empty()) wishes_.push_back(std::move(wish));
}

std::size_t Snapshot::byteLimitOf(Field field) {
  if (field == &Content::source) return kSourceLimit;
  return field == &Content::html ? kHtmlLimit : kByteLimit;
}

void Snapshot::fetchNext() {
  if (wishes_.empty()) return finish();
  Wish& wish = wishes_.front();
  const Candidate candidate = wish.candidates.front();
  wish.candidates.pop_front();
  Transfer::Question question{.target = candidate.target, .time = time_, .idleLimit = limits_.answer};
  const Atoms& atoms = requestor_.connection().atoms();
  if (wish.field == nullptr) {
    const bool isCopied = candidate.target == atom(kCopiedFiles);
    files_.emplace(atoms, candidate.target,
                   isCopied ? UriListReader::Form::copiedFiles : UriListReader::Form::uriList);
    question.byteLimit = kFilesLimit;
    return fetch(*files_, question, &Snapshot::takeFiles);
  }
  text_.emplace(atoms, candidate.target, candidate.encoding);
  question.byteLimit = byteLimitOf(wish.field);
  fetch(*text_, question, &Snapshot::takeText);
}

// What may be in another encoding than it was taken for gives way to what comes after it.
void Snapshot::takeText(Outcome outcome) {
  const Field field = wishes_.front().field;
  std::optional<String> text = outcome == Outcome::complete ? text_->take() : std::nullopt;
  if (text && field == &Content::rtf && !text->hasPrefix("{\\rtf")) text.reset();
  if (text && content_.targets.empty()) content_.targets = {"UTF8_STRING"};
  const bool isFilled = text.has_value() && (!text_->isGuess() || field == &Content::rtf);
  if (text && (isFilled || !(content_.*field))) content_.*field = std::move(text);
  goOn(outcome, isFilled);
}

// An empty list does not hide another one.
void Snapshot::takeFiles(Outcome outcome) {
  UriList files = files_->take();
  const bool isFilled = outcome == Outcome::complete && (!files.paths.empty() || files.hasOthers);
  if (outcome == Outcome::complete && (isFilled || !content_.files)) content_.files = std::move(files);
  goOn(outcome, isFilled);
}

void Snapshot::goOn(Outcome outcome, bool isFilled) {
  // Who does not answer once in time will not answer at all.
  if (outcome == Outcome::timedOut) return finish();
  if (isFilled || wishes_.front().candidates.empty()) wishes_.pop_front();
  fetchNext();
}

void Snapshot::finishUnread() {
  content_ = Content();
  content_.isSecret = true;
  finish();
}

void Snapshot::finish() {
  const Finished finished = std::move(finished_);
  finished(std::move(content_));
}

}  // namespace tarnix::x11
