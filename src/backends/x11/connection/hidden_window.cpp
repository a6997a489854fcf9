#include "backends/x11/connection/hidden_window.h"

namespace tarnix::x11 {

HiddenWindow::HiddenWindow(std::shared_ptr<Connection> connection)
    : connection_(std::move(connection)), id_(xcb_generate_id(connection_->xcb())) {
  const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
  xcb_create_window(connection_->xcb(), 0, id_, connection_->screen().root, 0, 0, 1, 1, 0,
                    XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
  connection_->flushSoon();
}

HiddenWindow::~HiddenWindow() {
  xcb_destroy_window(connection_->xcb(), id_);
  connection_->flushSoon();
}

}  // namespace tarnix::x11
