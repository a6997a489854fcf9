#pragma once

#include <sys/types.h>

#include <memory>
#include <string>

namespace tarnix::qt {

// A previewer, which is killed by the end of this object and never waited for.
class PreviewerProcess {
 public:
  // `bytes` is a descriptor that the process is handed, or -1; it stays the caller's. Null when no process
  // could be started.
  static std::unique_ptr<PreviewerProcess> start(int bytes);
  // Of the next processes, instead of the one that belongs to this program; empty for that one again.
  static void setProgram(std::string path);

  PreviewerProcess(const PreviewerProcess&) = delete;
  PreviewerProcess& operator=(const PreviewerProcess&) = delete;
  ~PreviewerProcess();

  pid_t id() const { return id_; }
  // Our end of the channel; never blocks. Closed with this object.
  int channel() const { return channel_; }
  // How many have been killed and not yet been buried.
  static int dying();

 private:
  PreviewerProcess(pid_t id, int channel) : id_(id), channel_(channel) {}

  pid_t id_;
  int channel_;
};

}  // namespace tarnix::qt
