#include "backends/x11/clipboard/selection_owner.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>
#include <utility>

#include "backends/x11/clipboard/type_mapping.h"
#include "backends/x11/text/text_decoder.h"

namespace tarnix::x11 {
namespace {

constexpr std::array kTextTargets{std::string_view("UTF8_STRING"),
                                  std::string_view("text/plain;charset=utf-8"),
                                  std::string_view("text/plain"), std::string_view("TEXT")};
constexpr std::array kRtfTargets{std::string_view("text/rtf"), std::string_view("application/rtf")};
constexpr std::size_t kMostPairs = 64;
constexpr std::size_t kMostTransfers = 64;

bool isBefore(xcb_timestamp_t a, xcb_timestamp_t b) { return static_cast<std::int32_t>(a - b) < 0; }

template <typename Names>
bool isOneOf(const Connection& connection, const Names& names, xcb_atom_t target) {
  return std::any_of(names.begin(), names.end(),
                     [&](std::string_view name) { return connection.atoms()[name] == target; });
}

}  // namespace

SelectionOwner::SelectionOwner(std::shared_ptr<Connection> connection)
    : connection_(std::move(connection)), window_(connection_), work_(connection_->loop()) {
  listen(XCB_SELECTION_REQUEST, &SelectionOwner::answer);
  listen(XCB_SELECTION_CLEAR, &SelectionOwner::noteClear);
  listen(XCB_SELECTION_NOTIFY, &SelectionOwner::noteAnswer);
  listen(XCB_PROPERTY_NOTIFY, &SelectionOwner::notePropertyChange);
  listen(XCB_DESTROY_NOTIFY, &SelectionOwner::noteDestruction);
}

template <typename Event>
void SelectionOwner::listen(int type, void (SelectionOwner::*handler)(const Event&)) {
  events_.push_back(connection_->onEvent(type, [this, handler](const xcb_generic_event_t& event) {
    (this->*handler)(reinterpret_cast<const Event&>(event));
  }));
}

// Writing nothing to a property of our own makes the server tell the time (ICCCM, section 2.1).
void SelectionOwner::claim(std::shared_ptr<NSPasteboardItem> item) {
  for (const auto& request : std::exchange(waiting_, {})) notify(request, XCB_ATOM_NONE);
  work_.cancel();
  forms_.reset();
  item_ = std::move(item);
  isClaiming_ = true;
  xcb_change_property(connection_->xcb(), XCB_PROP_MODE_APPEND, window_.id(), atom("TARNIX_TIME"),
                      XCB_ATOM_STRING, 8, 0, nullptr);
  connection_->flushSoon();
}

void SelectionOwner::notePropertyChange(const xcb_property_notify_event_t& change) {
  if (change.window == window_.id()) return noteTime(change);
  if (change.state != XCB_PROPERTY_DELETE) return;
  const auto found = std::find_if(transfers_.begin(), transfers_.end(), [&change](const auto& transfer) {
    return transfer->requestor() == change.window && transfer->property() == change.atom;
  });
  if (found != transfers_.end()) (*found)->propertyDeleted();
}

void SelectionOwner::noteTime(const xcb_property_notify_event_t& change) {
  if (!isClaiming_ || change.atom != atom("TARNIX_TIME")) return;
  isClaiming_ = false;
  isOwner_ = true;
  acquired_ = change.time;
  xcb_set_selection_owner(connection_->xcb(), window_.id(), atom("CLIPBOARD"), acquired_);
  connection_->flushSoon();
}

// The transfers under way hold what they need of the content.
void SelectionOwner::noteClear(const xcb_selection_clear_event_t& clear) {
  const bool isOurs = clear.owner == window_.id() && clear.selection == atom("CLIPBOARD");
  if (!isOurs || !isOwner_ || isBefore(clear.time, acquired_)) return;
  isOwner_ = false;
  if (!isClaiming_) item_.reset();
}

void SelectionOwner::noteDestruction(const xcb_destroy_notify_event_t& destruction) {
  std::erase_if(transfers_,
                [&](const auto& transfer) { return transfer->requestor() == destruction.window; });
}

void SelectionOwner::answer(const xcb_selection_request_event_t& request) {
  if (mayAnswer(request) && waitsForForms(request.target)) return awaitForms(request);
  answerNow(request);
}

void SelectionOwner::answerNow(const xcb_selection_request_event_t& request) {
  if (!mayAnswer(request)) return notify(request, XCB_ATOM_NONE);
  if (request.target == atom("MULTIPLE")) return convertMultiple(request);
  // Clients from before the convention leave the property out.
  const xcb_atom_t property = request.property == XCB_ATOM_NONE ? request.target : request.property;
  notify(request,
         convert(request.requestor, request.target, property) ? property : xcb_atom_t{XCB_ATOM_NONE});
}

bool SelectionOwner::mayAnswer(const xcb_selection_request_event_t& request) const {
  if (!isOwner_ || !item_ || request.owner != window_.id()) return false;
  if (request.selection != atom("CLIPBOARD")) return false;
  return request.time == XCB_CURRENT_TIME || !isBefore(request.time, acquired_);
}

bool SelectionOwner::convert(xcb_window_t requestor, xcb_atom_t target, xcb_atom_t property) {
  if (target == atom("TARGETS")) {
    write(requestor, property, XCB_ATOM_ATOM, targets());
    return true;
  }
  if (target == atom("TIMESTAMP")) {
    write(requestor, property, XCB_ATOM_INTEGER, {acquired_});
    return true;
  }
  std::optional<Payload> payload = payloadFor(target);
  return payload && send(requestor, property, std::move(*payload));
}

std::vector<xcb_atom_t> SelectionOwner::targets() const {
  std::vector<xcb_atom_t> list{atom("TARGETS"), atom("TIMESTAMP"), atom("MULTIPLE")};
  if (item_->stringForType(types::rtf)) {
    for (const std::string_view name : kRtfTargets) list.push_back(atom(name));
  }
  if (isRtfAlone()) list.push_back(atom("text/html"));
  const std::optional<String> text = plainText();
  if (text || isRtfAlone()) {
    for (const std::string_view name : kTextTargets) list.push_back(atom(name));
  }
  if (text && isTextLatin1(*text)) list.push_back(XCB_ATOM_STRING);
  if (item_->stringForType(types::source)) list.push_back(atom("org.nspasteboard.source"));
  return list;
}

bool SelectionOwner::isRtfAlone() const {
  return item_->stringForType(types::rtf) && !item_->stringForType(types::text);
}

bool SelectionOwner::waitsForForms(xcb_atom_t target) const {
  const bool isAtHand = isOneOf(*connection_, kRtfTargets, target) || target == atom("TARGETS") ||
                        target == atom("TIMESTAMP") || target == atom("org.nspasteboard.source");
  return !isAtHand && isRtfAlone() && !forms_;
}

void SelectionOwner::awaitForms(const xcb_selection_request_event_t& request) {
  if (waiting_.size() >= kMostTransfers) return notify(request, XCB_ATOM_NONE);
  waiting_.push_back(request);
  if (waiting_.size() > 1) return;
  work_.run([this, rtf = *item_->stringForType(types::rtf)] {
    return [this, forms = formsOfRtf(rtf)] { takeForms(forms); };
  });
}

void SelectionOwner::takeForms(std::optional<RichTextForms> forms) {
  forms_ = std::move(forms).value_or(RichTextForms());
  for (const auto& request : std::exchange(waiting_, {})) answerNow(request);
}

std::optional<String> SelectionOwner::plainText() const {
  if (const auto text = item_->stringForType(types::text)) return text;
  return forms_ && isRtfAlone() ? std::optional(forms_->plainText) : std::nullopt;
}

std::optional<Payload> SelectionOwner::payloadFor(xcb_atom_t target) const {
  const auto payload = [](const std::optional<String>& text, xcb_atom_t type, bool isConverted = false) {
    return text ? std::optional(Payload{*text, type, isConverted}) : std::nullopt;
  };
  if (isOneOf(*connection_, kRtfTargets, target)) return payload(item_->stringForType(types::rtf), target);
  if (target == atom("org.nspasteboard.source")) return payload(item_->stringForType(types::source), target);
  if (target == atom("text/html")) {
    const bool hasHtml = isRtfAlone() && forms_ && !forms_->html.empty();
    return payload(hasHtml ? std::optional(forms_->html) : std::nullopt, target);
  }
  const std::optional<String> text = plainText();
  if (target == atom("TEXT")) return payload(text, atom("UTF8_STRING"));
  if (isOneOf(*connection_, kTextTargets, target)) return payload(text, target);
  if (target != XCB_ATOM_STRING || !text || !isTextLatin1(*text)) return std::nullopt;
  return payload(text, target, true);
}

bool SelectionOwner::isTextLatin1(const String& text) const {
  if (!text.sharesBytesWith(checkedText_)) {
    checkedText_ = text;
    isCheckedLatin1_ = isLatin1(text);
  }
  return isCheckedLatin1_;
}

// A requestor that asks anew with the same property has given up what it was getting there.
bool SelectionOwner::send(xcb_window_t requestor, xcb_atom_t property, Payload payload) {
  std::erase_if(transfers_, [&](const auto& transfer) {
    return transfer->requestor() == requestor && transfer->property() == property;
  });
  if (payload.size() > pieceLimit(*connection_)) {
    if (transfers_.size() >= kMostTransfers) return false;
    const auto sibling = std::find_if(transfers_.begin(), transfers_.end(), [&](const auto& transfer) {
      return transfer->requestor() == requestor;
    });
    auto events = sibling == transfers_.end() ? std::make_shared<WindowEvents>(connection_, requestor)
                                              : (*sibling)->events();
    transfers_.push_back(std::make_unique<OutgoingTransfer>(
        connection_, std::move(events), requestor, property, std::move(payload),
        [this](const OutgoingTransfer& transfer) { drop(transfer); }));
    return true;
  }
  const xcb_atom_t type = payload.type;
  PayloadReader reader(std::move(payload));
  const std::string_view bytes = reader.next(pieceLimit(*connection_));
  xcb_change_property(connection_->xcb(), XCB_PROP_MODE_REPLACE, requestor, property, type, 8,
                      static_cast<std::uint32_t>(bytes.size()), bytes.data());
  return true;
}

void SelectionOwner::drop(const OutgoingTransfer& transfer) {
  std::erase_if(transfers_, [&transfer](const auto& each) { return each.get() == &transfer; });
}

void SelectionOwner::convertMultiple(const xcb_selection_request_event_t& request) {
  if (request.property == XCB_ATOM_NONE) return notify(request, XCB_ATOM_NONE);
  const auto cookie = xcb_get_property(connection_->xcb(), 0, request.requestor, request.property,
                                       XCB_GET_PROPERTY_TYPE_ANY, 0, 2 * kMostPairs);
  const std::uint32_t key = cookie.sequence;
  multiples_[key] = connection_->onReply<xcb_get_property_reply_t>(cookie, [this, request, key](auto pairs) {
    multiples_.erase(key);
    answerMultiple(request, pairs.get());
  });
}

// What can't be converted is replaced by nothing in the list of pairs, and one answer tells of all.
void SelectionOwner::answerMultiple(const xcb_selection_request_event_t& request,
                                    const xcb_get_property_reply_t* reply) {
  if (reply == nullptr || reply->format != 32 || !mayAnswer(request)) return notify(request, XCB_ATOM_NONE);
  std::vector<xcb_atom_t> pairs(reply->value_len / 2 * 2);
  std::memcpy(pairs.data(), xcb_get_property_value(reply), pairs.size() * sizeof(xcb_atom_t));
  for (std::size_t at = 0; at < pairs.size(); at += 2) {
    const bool isNested = pairs[at] == atom("MULTIPLE") || pairs[at + 1] == XCB_ATOM_NONE;
    if (isNested || !convert(request.requestor, pairs[at], pairs[at + 1]))
      pairs[at] = pairs[at + 1] = XCB_ATOM_NONE;
  }
  write(request.requestor, request.property, atom("ATOM_PAIR"), pairs);
  notify(request, request.property);
}

void SelectionOwner::write(xcb_window_t window, xcb_atom_t property, xcb_atom_t type,
                           const std::vector<std::uint32_t>& values) {
  xcb_change_property(connection_->xcb(), XCB_PROP_MODE_REPLACE, window, property, type, 32,
                      static_cast<std::uint32_t>(values.size()), values.data());
}

void SelectionOwner::notify(const xcb_selection_request_event_t& request, xcb_atom_t property) {
  // What is sent is a whole event, which the structure alone is too short for.
  std::array<char, 32> bytes{};
  xcb_selection_notify_event_t event{};
  event.response_type = XCB_SELECTION_NOTIFY;
  event.time = request.time;
  event.requestor = request.requestor;
  event.selection = request.selection;
  event.target = request.target;
  event.property = property;
  std::memcpy(bytes.data(), &event, sizeof event);
  xcb_send_event(connection_->xcb(), 0, request.requestor, XCB_EVENT_MASK_NO_EVENT, bytes.data());
  connection_->flushSoon();
}

bool SelectionOwner::handOver(RunLoop::Duration limit) {
  if (!isOwner_ && !isClaiming_) return false;
  handOver_ = HandOver::none;
  const auto cookie = xcb_get_selection_owner(connection_->xcb(), atom("CLIPBOARD_MANAGER"));
  const auto managerKnown = connection_->onReply<xcb_get_selection_owner_reply_t>(cookie, [this](auto reply) {
    const bool hasManager = reply && reply->owner != XCB_WINDOW_NONE;
    handOver_ = hasManager ? HandOver::asked : HandOver::refused;
    if (!hasManager) return;
    xcb_convert_selection(connection_->xcb(), window_.id(), atom("CLIPBOARD_MANAGER"), atom("SAVE_TARGETS"),
                          atom("TARNIX_ANSWER_0"), XCB_CURRENT_TIME);
    connection_->flushSoon();
  });
  connection_->processUntil([this] { return handOver_ == HandOver::done || handOver_ == HandOver::refused; },
                            limit);
  return handOver_ == HandOver::done;
}

void SelectionOwner::noteAnswer(const xcb_selection_notify_event_t& answer) {
  const bool isManager = answer.requestor == window_.id() && answer.selection == atom("CLIPBOARD_MANAGER");
  if (!isManager || handOver_ != HandOver::asked) return;
  handOver_ = answer.property == XCB_ATOM_NONE ? HandOver::refused : HandOver::done;
}

}  // namespace tarnix::x11
