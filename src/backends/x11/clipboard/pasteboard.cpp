#include "backends/x11/clipboard/pasteboard.h"

#include <xcb/xfixes.h>

#include <chrono>
#include <utility>

#include "platform/appkit/rich_text/conversions.h"

namespace tarnix::x11 {
namespace {

using namespace std::chrono_literals;

// The clipboard is looked at this often, so fetching more often is in vain.
constexpr RunLoop::Duration kFetchInterval = 200ms;
// Quitting takes a second at most, with all that comes after this.
constexpr RunLoop::Duration kHandOverLimit = 600ms;
// Programs that keep what others leave behind notice the loss by an event, or look twice a second. Nobody
// copies the same again as soon as that.
constexpr std::chrono::milliseconds kTakeoverLimit = 750ms;
constexpr std::chrono::milliseconds kEchoLimit = 500ms;
constexpr std::chrono::milliseconds kAssertionLimit = 200ms;

}  // namespace

Pasteboard::Pasteboard(std::shared_ptr<Connection> connection, Survey survey, const FetchLimits& limits)
    : connection_(std::move(connection)),
      survey_(std::move(survey)),
      limits_(limits),
      owner_(connection_),
      requestor_(connection_),
      names_(connection_),
      conversion_(connection_->loop()) {
  observe();
}

void Pasteboard::observe() {
  const int event = connection_->firstEvent(xcb_xfixes_id).value_or(0) + XCB_XFIXES_SELECTION_NOTIFY;
  ownerChanges_ = connection_->onEvent(event, [this](const xcb_generic_event_t& generic) {
    const auto& change = reinterpret_cast<const xcb_xfixes_selection_notify_event_t&>(generic);
    if (change.selection == connection_->atoms()["CLIPBOARD"]) ownerChanged(change);
    if (change.selection == connection_->atoms()["CLIPBOARD_MANAGER"]) manager_ = change.owner;
  });
  // The owners from before send no event.
  firstManager_ = watch("CLIPBOARD_MANAGER", [this](xcb_window_t owner) { manager_ = owner; });
  firstOwner_ = watch("CLIPBOARD", [this](xcb_window_t owner) {
    if (round_ || changeCount_ > 0) return;
    isFirstKnown_ = owner == XCB_WINDOW_NONE;
    if (!isFirstKnown_) fetch(true);
  });
}

Connection::Subscription Pasteboard::watch(std::string_view selection,
                                           std::function<void(xcb_window_t)> takeFirst) {
  const xcb_atom_t atom = connection_->atoms()[selection];
  // Asked in this order, or a change in between would be missed.
  xcb_xfixes_select_selection_input(connection_->xcb(), owner_.window(), atom,
                                    XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                        XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                        XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
  return connection_->onReply<xcb_get_selection_owner_reply_t>(
      xcb_get_selection_owner(connection_->xcb(), atom),
      [takeFirst = std::move(takeFirst)](const auto& reply) {
        takeFirst(reply ? reply->owner : xcb_window_t{XCB_WINDOW_NONE});
      });
}

bool Pasteboard::awaitFirstSnapshot(RunLoop::Duration limit) {
  return connection_->processUntil([this] { return isFirstKnown_; }, limit);
}

bool Pasteboard::handOver() { return isOwn_ && owner_.handOver(kHandOverLimit); }

std::optional<std::vector<std::shared_ptr<NSPasteboardItem>>> Pasteboard::pasteboardItems() const {
  return items_;
}

std::optional<String> Pasteboard::stringForType(const PasteboardType& type) const {
  for (const auto& item : items_) {
    if (std::optional<String> text = item->stringForType(type)) return text;
  }
  if (type == types::source && !items_.empty()) return source_;
  return std::nullopt;
}

AnyCancellable Pasteboard::whenSettled(std::function<void()> settled) const {
  if (isSettled()) return NSPasteboard::whenSettled(std::move(settled));
  const auto isCalled = std::make_shared<bool>(false);
  return settled_.publisher().sink([settled = std::move(settled), isCalled](const Void&) {
    if (!std::exchange(*isCalled, true)) settled();
  });
}

int Pasteboard::clearContents() {
  abandonRound();
  nextFetch_.cancel();
  emptied_.cancel();
  written_ = std::make_shared<OwnItem>();
  owner_.claim(written_);
  publishOwn();
  return changeCount_;
}

bool Pasteboard::setString(const String& text, const PasteboardType& type) {
  if (!isOwn_ || round_ || nextFetch_ || emptied_) return false;
  written_->set(type, text);
  items_ = {written_};
  return true;
}

void Pasteboard::ownerChanged(const xcb_xfixes_selection_notify_event_t& change) {
  abandonRound();
  if (change.owner == XCB_WINDOW_NONE) return ownerLost(change);
  emptied_.cancel();
  // It was not lost in between, so that nothing new is to be learnt of its owner.
  if (nextFetch_ && present_ && present_->isOfClientOf(change.owner)) {
    present_->renew(change);
    return fetchSoon(change.selection_timestamp);
  }
  const bool isOurs = change.owner == owner_.window();
  const auto former = std::exchange(
      present_, std::make_shared<Ownership>(connection_, change, isOurs ? Identify() : identify_, present_));
  unread_ = former == known_ ? nullptr : former;
  if (!isOurs) return fetchSoon(change.selection_timestamp);
  nextFetch_.cancel();
  noteSettled();
  // What was written was published at once, but another program's content may have come between.
  if (!isOwn_) publishOwn();
}

void Pasteboard::ownerLost(const xcb_xfixes_selection_notify_event_t& change) {
  nextFetch_.cancel();
  lost_ = std::make_shared<Ownership>(connection_, change, Identify());
  emptied_ = connection_->loop().scheduleOnce(kTakeoverLimit, [this] {
    emptied_.cancel();
    noteSettled();
    publish({}, false);
  });
}

// Who keeps the content of others was there before it was lost, or says openly what it is for. The server may
// be asked late about the moment of the loss, when the identifiers of the lost client are those of another.
bool Pasteboard::isByKeeper() const {
  if (!present_) return false;
  if (present_->isOfClientOf(manager_)) return true;
  if (!lost_ || !present_->follows(*lost_, kTakeoverLimit.count())) return false;
  if (!known_) return present_->hasWitnessed(*lost_);
  return present_->hasWitnessed(*known_) && !present_->isOfSameClientAs(*known_);
}

// The same once more from its owner, or from one who repeats whatever others copy. After a loss the
// identifiers of the former client may be those of another.
bool Pasteboard::isEcho() const {
  if (!present_ || !known_ || lost_) return false;
  if (present_->isOfSameClientAs(*known_)) return present_->follows(*known_, kAssertionLimit.count());
  return present_->follows(*known_, kEchoLimit.count()) && present_->hasWitnessed(*known_);
}

// A secret was not read and can't be compared; another program that keeps or repeats it does not make it
// public.
bool Pasteboard::isKept(const Content& content, const PasteboardItems& items) const {
  if (content.isSecret || (!isByKeeper() && !isEcho())) return false;
  const bool isByOther = isByKeeper() || !present_->isOfSameClientAs(*known_);
  return isSecret_ ? isByOther && unread_ == nullptr : isSameContent(items_, items);
}

void Pasteboard::fetchSoon(xcb_timestamp_t time) {
  nextFetchTime_ = time;
  if (nextFetch_) return;
  RunLoop& loop = connection_->loop();
  const RunLoop::Instant earliest = lastFetch_ ? *lastFetch_ + kFetchInterval : loop.now();
  if (earliest <= loop.now()) return fetch();
  nextFetch_ = loop.scheduleOnce(earliest - loop.now(), [this] { fetch(); });
}

void Pasteboard::fetch(bool isFirst) {
  nextFetch_.cancel();
  lastFetch_ = connection_->loop().now();
  round_ = std::make_shared<Round>();
  round_->isFirst = isFirst;
  const auto take = [this](Content content) {
    snapshot_.reset();
    if (content.html) return makeRtf(std::move(content));
    takeContent(std::move(content));
  };
  snapshot_ = std::make_unique<Snapshot>(requestor_, names_, nextFetchTime_, limits_, take);
  if (!survey_) {
    round_->isSurveyed = true;
    return;
  }
  survey_([this, weak = std::weak_ptr(round_)] {
    // A round that has ended meanwhile took this pasteboard's part with it, or the pasteboard itself.
    const auto round = weak.lock();
    if (!round) return;
    round->isSurveyed = true;
    finishRound();
  });
}

// Programs that read RTF find it wherever there is HTML.
void Pasteboard::makeRtf(Content content) {
  conversion_.run([this, content = std::make_shared<Content>(std::move(content))] {
    content->rtf = rtfFromHtml(*content->html);
    content->isRtfMade = content->rtf.has_value();
    content->html.reset();
    return [this, content] { takeContent(std::move(*content)); };
  });
}

void Pasteboard::takeContent(Content content) {
  round_->content = std::move(content);
  finishRound();
}

void Pasteboard::abandonRound() {
  snapshot_.reset();
  conversion_.cancel();
  round_.reset();
}

void Pasteboard::finishRound() {
  if (!round_->content || !round_->isSurveyed) return;
  const auto round = std::exchange(round_, nullptr);
  const Content& content = *round->content;
  PasteboardItems items = itemsOf(content, mapping_);
  if (round->isFirst) {
    isSecret_ = content.isSecret;
    return takeFirst(std::move(items));
  }
  const bool isKeptContent = isKept(content, items);
  auto source = sourceOfRound();
  noteSettled();
  if (isKeptContent) {
    isOwn_ = false;
    settled_.send({});
    return;
  }
  publish(std::move(items), false);
  isSecret_ = content.isSecret;
  source_ = std::move(source);
}

void Pasteboard::takeFirst(PasteboardItems items) {
  items_ = std::move(items);
  isFirstKnown_ = true;
  settled_.send({});
  if (const auto came = std::exchange(firstContentCame_, nullptr)) came();
}

// What somebody keeps before it could be read is still its maker's.
std::optional<String> Pasteboard::sourceOfRound() const {
  const auto& maker = unread_ && isByKeeper() ? unread_ : present_;
  return maker ? maker->source() : std::nullopt;
}

// The content of the last owner is known now.
void Pasteboard::noteSettled() {
  known_ = present_;
  unread_.reset();
  lost_.reset();
}

void Pasteboard::publishOwn() {
  const bool isEmpty = !written_ || written_->types().empty();
  publish(isEmpty ? PasteboardItems{} : PasteboardItems{written_}, true);
}

void Pasteboard::publish(PasteboardItems items, bool isOwn) {
  items_ = std::move(items);
  isOwn_ = isOwn;
  isSecret_ = false;
  source_.reset();
  isFirstKnown_ = true;
  ++changeCount_;
  connection_->loop().noteChange();
  settled_.send({});
}

}  // namespace tarnix::x11
