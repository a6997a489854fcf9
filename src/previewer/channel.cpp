#include "previewer/channel.h"

#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

namespace tarnix::previewer {

std::optional<Message> Channel::receive() const {
  FrameHeader header;
  std::string bytes(kHeaderBytes, '\0');
  if (!read(bytes.data(), bytes.size())) return std::nullopt;
  std::memcpy(&header, bytes.data(), kHeaderBytes);
  Message message{static_cast<MessageKind>(header.kind), {}};
  if (header.length > mostBytes(message.kind)) return std::nullopt;
  message.payload.resize(header.length);
  if (!read(message.payload.data(), message.payload.size())) return std::nullopt;
  return message;
}

void Channel::send(MessageKind kind, std::string_view payload, std::string_view bytes) const {
  const FrameHeader header{static_cast<std::uint32_t>(kind),
                           static_cast<std::uint32_t>(payload.size() + bytes.size())};
  std::string head(kHeaderBytes, '\0');
  std::memcpy(head.data(), &header, kHeaderBytes);
  head.append(payload);
  write(head);
  write(bytes);
}

bool Channel::read(char* bytes, std::size_t count) const {
  while (count > 0) {
    const ssize_t got = ::read(descriptor_, bytes, count);
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) return false;
    bytes += got;
    count -= static_cast<std::size_t>(got);
  }
  return true;
}

void Channel::write(std::string_view bytes) const {
  while (!bytes.empty()) {
    const ssize_t sent = ::send(descriptor_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (sent < 0 && errno == EINTR) continue;
    if (sent <= 0) std::_Exit(EXIT_FAILURE);
    bytes.remove_prefix(static_cast<std::size_t>(sent));
  }
}

}  // namespace tarnix::previewer
