#include "detail/rtf_reading.h"

#include <cstddef>
#include <utility>

#include "platform/appkit/rich_text/rtf/rtf_reader.h"
#include "platform/foundation/run_loop.h"

namespace tarnix {
namespace {

// What is read in one turn; most documents are shorter.
constexpr std::size_t kBytesInTurn = 64 * 1024;

}  // namespace

RtfReading::RtfReading() = default;
RtfReading::~RtfReading() = default;

RtfReading::Result RtfReading::textOf(const String& rtf) {
  if (!rtf_.sharesBytesWith(rtf)) {
    rtf_ = rtf;
    text_.reset();
    reader_.reset();
    if (auto reader = RtfReader::create(rtf)) reader_ = std::make_unique<RtfReader>(std::move(*reader));
    readOn();
  }
  return {text_, reader_ != nullptr};
}

void RtfReading::readOn() {
  if (!reader_) return;
  if (reader_->advance(kBytesInTurn)) return scheduleTurn();
  text_ = reader_->take();
  reader_.reset();
}

void RtfReading::scheduleTurn() {
  if (std::exchange(isTurnScheduled_, true)) return;
  RunLoop::main().perform([weak = weak_from_this()] {
    const auto self = std::static_pointer_cast<RtfReading>(weak.lock());
    if (!self) return;
    self->isTurnScheduled_ = false;
    const bool wasReading = self->reader_ != nullptr;
    self->readOn();
    if (wasReading && !self->reader_) self->sendWillChange();
  });
}

}  // namespace tarnix
