#pragma once

#include <QSocketNotifier>
#include <functional>
#include <string>

#include "previewer/protocol/messages.h"

namespace tarnix::qt {

// Frames to and from a previewer, read and written as they come, a little in each turn of the loop. Nothing
// that arrives is trusted.
class PreviewChannel : public QObject {
 public:
  enum class Ending { closed, nonsense };
  // May close the channel.
  using Received = std::function<void(previewing::MessageKind, std::string payload)>;
  using Ended = std::function<void(Ending)>;

  // The descriptor is borrowed.
  PreviewChannel(int descriptor, Received received, Ended ended);

  // Nothing is called from now on, and the descriptor is let alone. To be called before it is closed, and of
  // a channel that is calling; such a one is deleted later.
  void close();
  void send(previewing::MessageKind kind, const std::string& payload);

 private:
  void readSome();
  void writeSome();
  void takeFrames();

  int descriptor_;
  bool isClosed_ = false;
  Received received_;
  Ended ended_;
  std::string arrived_;
  std::string unsent_;
  QSocketNotifier readable_;
  QSocketNotifier writable_;
};

}  // namespace tarnix::qt
