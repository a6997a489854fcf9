#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "previewer/protocol/messages.h"

namespace tarnix::previewer {

using namespace previewing;

struct Message {
  MessageKind kind = MessageKind::open;
  std::string payload;
};

// The way to the window, which this process waits on. The process ends where the window has gone.
class Channel {
 public:
  explicit Channel(int descriptor) : descriptor_(descriptor) {}

  // Absent once the window has closed its end, or sends what is no message.
  std::optional<Message> receive() const;
  // `bytes` follow the payload in the same frame.
  void send(MessageKind kind, std::string_view payload, std::string_view bytes = {}) const;
  void refuse(Reason reason) const { send(MessageKind::refusal, payloadOf(Refusal{reason})); }

 private:
  bool read(char* bytes, std::size_t count) const;
  void write(std::string_view bytes) const;

  int descriptor_;
};

}  // namespace tarnix::previewer
