#pragma once

#include <xcb/xcb.h>

#include <cstdlib>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "backends/x11/connection/atoms.h"
#include "backends/x11/connection/result.h"
#include "platform/foundation/run_loop.h"

namespace tarnix::x11 {

struct FreeDeleter {
  void operator()(void* memory) const { std::free(memory); }
};
// What XCB allocates and its caller must free.
template <typename Type>
using Owned = std::unique_ptr<Type, FreeDeleter>;

// This program's own line to the X server, watched by a run loop. After it is open it never waits for the
// server: answers and events reach their handlers in the loop's turns, in the order in which the server sent
// them. Used on the loop's thread only.
class Connection {
 public:
  using Subscription = RunLoop::Subscription;
  template <typename Reply>
  using ReplyHandler = std::function<void(Owned<Reply>)>;
  using EventHandler = std::function<void(const xcb_generic_event_t&)>;

  // An empty name means the display that the environment names. Waits for the server, at most 3 s once it has
  // accepted the connection. The loop is borrowed and must outlive the connection.
  static Result<std::unique_ptr<Connection>> open(const std::string& display, RunLoop& loop);
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;
  ~Connection();

  // Calls `handler` once when the request that `cookie` stands for is answered; with nothing when it failed.
  // Dropping the subscription forgets the answer; it also is forgotten when the connection is lost.
  template <typename Reply, typename Cookie>
  [[nodiscard]] Subscription onReply(Cookie cookie, ReplyHandler<Reply> handler) {
    return await(cookie.sequence, [handler = std::move(handler)](Owned<void> reply) {
      handler(Owned<Reply>(static_cast<Reply*>(reply.release())));
    });
  }

  // Calls `handler` for each event of this type (without the "sent by a client" bit).
  [[nodiscard]] Subscription onEvent(int type, EventHandler handler);

  // Requests that await no answer go straight to XCB; this sends them at the end of the turn. `onReply` does
  // so by itself. The server's complaints about them are dropped, since foreign windows vanish at any time.
  void flushSoon();
  // Does now what the loop does when the server has sent something.
  void process();
  // Goes on with that alone, and with nothing else of the loop, until `condition` holds. For the program's
  // start and end, which may wait. False when it does not hold within `limit`.
  bool processUntil(const std::function<bool()>& condition, RunLoop::Duration limit);

  // Called once, in a turn of its own, when the server is gone. Everything above then does nothing.
  void setClosed(std::function<void()> closed) { closed_ = std::move(closed); }
  bool isOpen() const { return isOpen_; }

  xcb_connection_t* xcb() const { return xcb_.get(); }
  RunLoop& loop() const { return loop_; }
  const Atoms& atoms() const { return atoms_; }
  const xcb_screen_t& screen() const { return *screen_; }
  int descriptor() const { return xcb_get_file_descriptor(xcb_.get()); }
  // In bytes, the request's own header included.
  std::size_t maximumRequestSize() const { return maximumRequestSize_; }
  // The type of the first event of an extension; absent where the server lacks it. Known: XFixes, XRes,
  // RandR.
  std::optional<int> firstEvent(xcb_extension_t& extension) const;

 private:
  using AnyReplyHandler = std::function<void(Owned<void>)>;
  struct Awaited {
    unsigned sequence;
    std::weak_ptr<AnyReplyHandler> handler;
  };
  struct Disconnect {
    void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
  };

  Connection(xcb_connection_t* connection, int screenNumber, RunLoop& loop);
  std::optional<Error> start();
  bool waitFor(unsigned sequence, RunLoop::Instant deadline, Owned<void>& reply);
  bool takeReply(unsigned sequence, Owned<void>& reply);
  Subscription await(unsigned sequence, AnyReplyHandler handler);
  bool processOne();
  bool deliverReply();
  void deliverRepliesUpTo(unsigned sequence);
  void dispatch(const xcb_generic_event_t& event);
  void continueSoon();
  void noteLoss();

  std::unique_ptr<xcb_connection_t, Disconnect> xcb_;
  RunLoop& loop_;
  const xcb_screen_t* screen_;
  Atoms atoms_;
  std::size_t maximumRequestSize_ = 0;
  bool isOpen_ = true;
  bool isProcessing_ = false;
  std::function<void()> closed_;
  std::deque<Awaited> awaited_;
  std::map<int, std::vector<std::weak_ptr<EventHandler>>> handlers_;
  Subscription watch_;
  Subscription turn_;  // The turn that sends, or goes on with what was left over.
};

}  // namespace tarnix::x11
