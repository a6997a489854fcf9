#pragma once

#include <memory>
#include <vector>

#include "backends/x11/connection/connection.h"
#include "backends/x11/connection/request_batch.h"
#include "platform/appkit/workspace.h"

namespace tarnix::x11 {

// The monitors of an X display, the primary one first, in pixels of the root window as the windows are. Kept
// up to date while the connection lasts; where the server does not tell of monitors, the root window is the
// screen.
class ScreenList : public NSScreenList {
 public:
  explicit ScreenList(std::shared_ptr<Connection> connection);
  ScreenList(const ScreenList&) = delete;
  ScreenList& operator=(const ScreenList&) = delete;

  std::vector<NSScreen> screens() const override { return screens_; }

 private:
  void watch();
  void read();

  std::shared_ptr<Connection> connection_;
  std::vector<NSScreen> screens_;
  std::unique_ptr<RequestBatch> reading_;
  std::vector<Connection::Subscription> changes_;
};

}  // namespace tarnix::x11
