#include "backends/x11/clipboard/outgoing_transfer.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "backends/x11/text/text_decoder.h"
#include "platform/foundation/utf8.h"

namespace tarnix::x11 {
namespace {

using namespace std::chrono_literals;

constexpr std::size_t kLargestPiece = std::size_t{256} << 10;
constexpr std::size_t kRequestHeader = 64;
constexpr RunLoop::Duration kIdleLimit = 8s;

}  // namespace

std::size_t pieceLimit(const Connection& connection) {
  return std::min(kLargestPiece, connection.maximumRequestSize() - kRequestHeader);
}

std::size_t Payload::size() const {
  const std::string_view bytes = text.view();
  if (!isLatin1) return bytes.size();
  return bytes.size() -
         static_cast<std::size_t>(std::count_if(bytes.begin(), bytes.end(), isUtf8Continuation));
}

std::string_view PayloadReader::next(std::size_t limit) {
  const std::string_view rest = payload_.text.view().substr(offset_);
  if (!payload_.isLatin1) {
    offset_ += std::min(limit, rest.size());
    return rest.substr(0, limit);
  }
  Latin1Chunk chunk = latin1Chunk(rest, limit);
  offset_ += chunk.consumed;
  converted_ = std::move(chunk.bytes);
  return converted_;
}

OutgoingTransfer::OutgoingTransfer(std::shared_ptr<Connection> connection,
                                   std::shared_ptr<WindowEvents> events, xcb_window_t requestor,
                                   xcb_atom_t property, Payload payload, Finished finished)
    : connection_(std::move(connection)),
      events_(std::move(events)),
      requestor_(requestor),
      property_(property),
      type_(payload.type),
      reader_(payload),
      finished_(std::move(finished)) {
  const auto size = static_cast<std::uint32_t>(payload.size());
  xcb_change_property(connection_->xcb(), XCB_PROP_MODE_REPLACE, requestor_, property_,
                      connection_->atoms()["INCR"], 32, 1, &size);
  connection_->flushSoon();
  watchClock();
}

// The piece of length zero says that there are no more, and its removal that this was understood.
void OutgoingTransfer::propertyDeleted() {
  if (isLastSent_) return finish();
  const std::string_view piece = reader_.next(pieceLimit(*connection_));
  isLastSent_ = piece.empty();
  xcb_change_property(connection_->xcb(), XCB_PROP_MODE_REPLACE, requestor_, property_, type_, 8,
                      static_cast<std::uint32_t>(piece.size()), piece.data());
  connection_->flushSoon();
  watchClock();
}

void OutgoingTransfer::watchClock() {
  clock_ = connection_->loop().scheduleOnce(kIdleLimit, [this] { finish(); });
}

void OutgoingTransfer::finish() {
  clock_.cancel();
  const Finished finished = std::exchange(finished_, nullptr);
  if (finished) finished(*this);
}

}  // namespace tarnix::x11
