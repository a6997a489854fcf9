#include "backends/x11/session.h"

#include "backends/x11/pasteboard.h"
#include "backends/x11/screens.h"
#include "backends/x11/window_server.h"

namespace tarnix::x11 {

Result<std::unique_ptr<Session>> Session::open(const std::string& display, RunLoop& loop) {
  auto connection = Connection::open(display, loop);
  if (!connection) return connection.error();
  return std::unique_ptr<Session>(new Session(std::move(*connection)));
}

Session::Session(std::shared_ptr<Connection> connection)
    : connection_(std::move(connection)),
      windowServer_(std::make_shared<WindowServer>(connection_)),
      screens_(std::make_shared<ScreenList>(connection_)),
      pasteboard_(std::make_shared<Pasteboard>(
          connection_,
          [windows = windowServer_](std::function<void()> done) { windows->refresh(std::move(done)); })) {}

Session::~Session() = default;

}  // namespace tarnix::x11
