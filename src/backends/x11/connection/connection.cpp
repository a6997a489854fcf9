#include "backends/x11/connection/connection.h"

#include <poll.h>
#include <xcb/randr.h>
#include <xcb/res.h>
#include <xcb/xcbext.h>
#include <xcb/xfixes.h>

#include <algorithm>
#include <chrono>
#include <optional>
#include <utility>

namespace tarnix::x11 {
namespace {

using namespace std::chrono_literals;

constexpr RunLoop::Duration kStartLimit = 3s;
// How long one turn may go on with what the server sent before other work of the loop gets its chance.
constexpr RunLoop::Duration kTurnBudget = 8ms;

bool isAfter(unsigned a, unsigned b) { return static_cast<int>(a - b) > 0; }

Error connectError(int code, const std::string& display) {
  const std::string name = display.empty() ? "the display of this session" : "display " + display;
  if (code == XCB_CONN_CLOSED_INVALID_SCREEN) return {Error::Kind::unavailable, name + " has no such screen"};
  if (code == XCB_CONN_CLOSED_PARSE_ERR) return {Error::Kind::unavailable, name + " is no display name"};
  return {Error::Kind::unavailable, "can't connect to " + name};
}

const xcb_screen_t* screenNumbered(xcb_connection_t* connection, int number) {
  xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
  for (; number > 0 && screens.rem > 1; --number) xcb_screen_next(&screens);
  return screens.data;
}

// True when the descriptor has something to read before `remaining` is over; may return early.
bool waitForInput(int descriptor, RunLoop::Duration remaining) {
  const auto milliseconds = std::chrono::ceil<std::chrono::milliseconds>(remaining).count();
  if (milliseconds <= 0) return false;
  pollfd input{descriptor, POLLIN, 0};
  poll(&input, 1, static_cast<int>(milliseconds));
  return true;
}

}  // namespace

Connection::Connection(xcb_connection_t* connection, int screenNumber, RunLoop& loop)
    : xcb_(connection), loop_(loop), screen_(screenNumbered(connection, screenNumber)) {}

Connection::~Connection() = default;

Result<std::unique_ptr<Connection>> Connection::open(const std::string& display, RunLoop& loop) {
  int screenNumber = 0;
  xcb_connection_t* xcb = xcb_connect(display.empty() ? nullptr : display.c_str(), &screenNumber);
  if (const int code = xcb_connection_has_error(xcb)) {
    xcb_disconnect(xcb);
    return connectError(code, display);
  }
  std::unique_ptr<Connection> connection(new Connection(xcb, screenNumber, loop));
  if (const std::optional<Error> error = connection->start()) return *error;
  return connection;
}

std::optional<Error> Connection::start() {
  const RunLoop::Instant deadline = loop_.now() + kStartLimit;
  for (xcb_extension_t* extension : {&xcb_xfixes_id, &xcb_res_id, &xcb_randr_id}) {
    xcb_prefetch_extension_data(xcb(), extension);
  }
  xcb_prefetch_maximum_request_length(xcb());
  std::vector<xcb_intern_atom_cookie_t> cookies;
  for (const std::string_view name : atomNames()) {
    cookies.push_back(xcb_intern_atom(xcb(), 0, static_cast<std::uint16_t>(name.size()), name.data()));
  }
  for (std::size_t index = 0; index < cookies.size(); ++index) {
    Owned<void> reply;
    if (!waitFor(cookies[index].sequence, deadline, reply)) break;
    if (reply) atoms_.add(atomNames()[index], static_cast<xcb_intern_atom_reply_t*>(reply.get())->atom);
  }
  if (xcb_connection_has_error(xcb()))
    return Error{Error::Kind::closed, "the X server closed the connection"};
  if (atoms_[atomNames().back()] == XCB_ATOM_NONE) {
    return Error{Error::Kind::timedOut, "the X server does not answer"};
  }
  if (!firstEvent(xcb_xfixes_id)) return Error{Error::Kind::unavailable, "the X server lacks XFixes"};
  maximumRequestSize_ = std::size_t{4} * xcb_get_maximum_request_length(xcb());
  // XFixes refuses everything before its version was asked for. Version 1 has what is used here.
  xcb_discard_reply(xcb(), xcb_xfixes_query_version(xcb(), 5, 0).sequence);
  watch_ = loop_.watchDescriptor(descriptor(), [this] { process(); });
  flushSoon();
  return std::nullopt;
}

bool Connection::waitFor(unsigned sequence, RunLoop::Instant deadline, Owned<void>& reply) {
  xcb_flush(xcb());
  do {
    // Asking for an event is what makes XCB read. Nothing that sends events has been selected yet.
    std::free(xcb_poll_for_event(xcb()));
    if (takeReply(sequence, reply)) return true;
  } while (waitForInput(descriptor(), deadline - loop_.now()));
  return false;
}

bool Connection::takeReply(unsigned sequence, Owned<void>& reply) {
  void* answer = nullptr;
  xcb_generic_error_t* error = nullptr;
  if (xcb_poll_for_reply(xcb(), sequence, &answer, &error) == 0) return false;
  std::free(error);
  reply.reset(answer);
  return true;
}

std::optional<int> Connection::firstEvent(xcb_extension_t& extension) const {
  const xcb_query_extension_reply_t* reply = xcb_get_extension_data(xcb(), &extension);
  if (reply == nullptr || reply->present == 0) return std::nullopt;
  return reply->first_event;
}

Connection::Subscription Connection::await(unsigned sequence, AnyReplyHandler handler) {
  if (!isOpen_) return {};
  auto kept = std::make_shared<AnyReplyHandler>(std::move(handler));
  awaited_.push_back({sequence, kept});
  flushSoon();
  return Subscription(std::move(kept));
}

Connection::Subscription Connection::onEvent(int type, EventHandler handler) {
  auto kept = std::make_shared<EventHandler>(std::move(handler));
  auto& handlers = handlers_[type];
  std::erase_if(handlers, [](const auto& old) { return old.expired(); });
  handlers.push_back(kept);
  return Subscription(std::move(kept));
}

void Connection::flushSoon() {
  if (isOpen_ && !isProcessing_ && !turn_) continueSoon();
}

void Connection::continueSoon() {
  turn_ = loop_.scheduleOnce(0ns, [this] { process(); });
}

void Connection::process() {
  const RunLoop::Instant end = loop_.now() + kTurnBudget;
  bool isOver = false;
  isProcessing_ = true;
  for (bool didAny = true; didAny && !isOver && isOpen_;) {
    // XCB may read while it writes, so what was received is looked at after each flush.
    xcb_flush(xcb());
    for (didAny = false; !isOver && processOne(); isOver = loop_.now() >= end) didAny = true;
    if (xcb_connection_has_error(xcb())) noteLoss();
  }
  isProcessing_ = false;
  if (!isOpen_) return;
  turn_.cancel();
  if (isOver) continueSoon();
}

bool Connection::processUntil(const std::function<bool()>& condition, RunLoop::Duration limit) {
  const RunLoop::Instant deadline = loop_.now() + limit;
  while (!condition()) {
    if (!isOpen_) return false;
    process();
    if (turn_ || condition()) continue;
    if (!waitForInput(descriptor(), deadline - loop_.now())) return false;
  }
  return true;
}

bool Connection::processOne() {
  if (const Owned<xcb_generic_event_t> event{xcb_poll_for_event(xcb())}) {
    deliverRepliesUpTo(event->full_sequence);
    dispatch(*event);
    return true;
  }
  return deliverReply();
}

void Connection::deliverRepliesUpTo(unsigned sequence) {
  while (!awaited_.empty() && !isAfter(awaited_.front().sequence, sequence) && deliverReply()) {
  }
}

bool Connection::deliverReply() {
  if (awaited_.empty()) return false;
  Owned<void> answer;
  if (!takeReply(awaited_.front().sequence, answer)) return false;
  const auto handler = awaited_.front().handler.lock();
  awaited_.pop_front();
  if (handler && !xcb_connection_has_error(xcb())) (*handler)(std::move(answer));
  return true;
}

void Connection::dispatch(const xcb_generic_event_t& event) {
  const auto found = handlers_.find(event.response_type & 0x7f);
  if (found == handlers_.end()) return;
  const auto snapshot = found->second;
  for (const auto& weak : snapshot) {
    if (const auto handler = weak.lock()) (*handler)(event);
  }
}

void Connection::noteLoss() {
  isOpen_ = false;
  watch_.cancel();
  awaited_.clear();
  turn_ = loop_.scheduleOnce(0ns, [this] {
    if (const auto closed = std::exchange(closed_, nullptr)) closed();
  });
}

}  // namespace tarnix::x11
