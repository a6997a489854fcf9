#pragma once

#include <xcb/xproto.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "backends/x11/connection/connection.h"
#include "backends/x11/connection/property_value.h"

namespace tarnix::x11 {

// Requests that are sent in one go, and what comes after all of them are answered. Dropping it calls all of
// it off; when the connection is lost there is no further call.
class RequestBatch {
 public:
  explicit RequestBatch(std::shared_ptr<Connection> connection) : connection_(std::move(connection)) {}
  RequestBatch(const RequestBatch&) = delete;
  RequestBatch& operator=(const RequestBatch&) = delete;

  // `answered` is called with null when the request failed, mostly because its window is gone.
  template <typename Reply, typename Cookie>
  void ask(Cookie cookie, std::function<void(const Reply*)> answered) {
    ++unanswered_;
    answers_.push_back(
        connection_->onReply<Reply>(cookie, [this, answered = std::move(answered)](Owned<Reply> reply) {
          answered(reply.get());
          if (--unanswered_ == 0) finish();
        }));
  }
  // `name` must be one of `atomNames()`.
  void askProperty(xcb_window_t window, std::string_view name, std::function<void(PropertyValue)> answered);

  // Called once, at once if nothing is asked. It may ask anew, or drop the batch.
  void then(std::function<void()> next);

 private:
  void finish();

  std::shared_ptr<Connection> connection_;
  std::size_t unanswered_ = 0;
  std::function<void()> next_;
  std::vector<Connection::Subscription> answers_;
};

}  // namespace tarnix::x11
