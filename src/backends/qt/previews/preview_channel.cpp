#include "backends/qt/previews/preview_channel.h"

#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <utility>

namespace tarnix::qt {
namespace {

using previewing::FrameHeader;
using previewing::kHeaderBytes;
using previewing::MessageKind;

constexpr std::size_t kBytesInTurn = 256 * 1024;

bool isTransient(int error) { return error == EAGAIN || error == EWOULDBLOCK || error == EINTR; }

FrameHeader headerOf(const std::string& bytes) {
  FrameHeader header;
  std::memcpy(&header, bytes.data(), kHeaderBytes);
  return header;
}

}  // namespace

PreviewChannel::PreviewChannel(int descriptor, Received received, Ended ended)
    : descriptor_(descriptor),
      received_(std::move(received)),
      ended_(std::move(ended)),
      readable_(descriptor, QSocketNotifier::Read),
      writable_(descriptor, QSocketNotifier::Write) {
  writable_.setEnabled(false);
  connect(&readable_, &QSocketNotifier::activated, this, [this] { readSome(); });
  connect(&writable_, &QSocketNotifier::activated, this, [this] { writeSome(); });
}

void PreviewChannel::close() {
  isClosed_ = true;
  readable_.setEnabled(false);
  writable_.setEnabled(false);
}

void PreviewChannel::send(MessageKind kind, const std::string& payload) {
  const FrameHeader header{static_cast<std::uint32_t>(kind), static_cast<std::uint32_t>(payload.size())};
  std::string head(kHeaderBytes, '\0');
  std::memcpy(head.data(), &header, kHeaderBytes);
  unsent_ += head + payload;
  writeSome();
}

// A channel that can't be written to has closed, which reading tells.
void PreviewChannel::writeSome() {
  const ssize_t sent = ::send(descriptor_, unsent_.data(), unsent_.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
  if (sent > 0) unsent_.erase(0, static_cast<std::size_t>(sent));
  if (sent < 0 && !isTransient(errno)) unsent_.clear();
  writable_.setEnabled(!unsent_.empty());
}

void PreviewChannel::readSome() {
  static std::array<char, kBytesInTurn> bytes;
  const ssize_t got = recv(descriptor_, bytes.data(), bytes.size(), MSG_DONTWAIT);
  if (got < 0 && isTransient(errno)) return;
  if (got <= 0) {
    readable_.setEnabled(false);
    const Ended ended = ended_;
    return ended(Ending::closed);
  }
  arrived_.append(bytes.data(), static_cast<std::size_t>(got));
  takeFrames();
}

void PreviewChannel::takeFrames() {
  while (!isClosed_ && arrived_.size() >= kHeaderBytes) {
    const FrameHeader header = headerOf(arrived_);
    const auto kind = static_cast<MessageKind>(header.kind);
    if (header.length > previewing::mostBytes(kind)) {
      readable_.setEnabled(false);
      const Ended ended = ended_;
      return ended(Ending::nonsense);
    }
    const std::size_t whole = kHeaderBytes + header.length;
    if (arrived_.size() < whole) return arrived_.reserve(whole);
    std::string rest = arrived_.substr(whole);
    arrived_.resize(whole);
    // The one copy of a picture that is made here keeps its rows at even addresses.
    std::string payload = std::exchange(arrived_, std::move(rest)).erase(0, kHeaderBytes);
    const Received received = received_;
    received(kind, std::move(payload));
  }
}

}  // namespace tarnix::qt
