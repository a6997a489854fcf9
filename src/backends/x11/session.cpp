#include "backends/x11/session.h"

#include "backends/x11/clipboard/pasteboard.h"
#include "backends/x11/windows/screens.h"
#include "backends/x11/windows/window_server.h"

namespace tarnix::x11 {

Result<std::unique_ptr<Session>> Session::open(const std::string& display, RunLoop& loop,
                                               const FetchLimits& limits) {
  auto connection = Connection::open(display, loop);
  if (!connection) return connection.error();
  return std::unique_ptr<Session>(new Session(std::move(*connection), limits));
}

Session::Session(std::shared_ptr<Connection> connection, const FetchLimits& limits)
    : connection_(std::move(connection)),
      windowServer_(std::make_shared<WindowServer>(connection_)),
      screens_(std::make_shared<ScreenList>(connection_)),
      pasteboard_(std::make_shared<Pasteboard>(
          connection_,
          [windows = windowServer_](std::function<void()> done) { windows->refresh(std::move(done)); },
          limits)) {}

Session::~Session() = default;

}  // namespace tarnix::x11
