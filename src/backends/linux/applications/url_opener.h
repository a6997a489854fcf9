#pragma once

#include <sys/types.h>

#include <cstddef>
#include <string>
#include <vector>

namespace tarnix::linux_desktop {

// Has the desktop open addresses, each by a process of its own that nobody waits for.
class UrlOpener {
 public:
  // Programs to try in turn, each with its arguments before the address. They are looked for in PATH.
  using Commands = std::vector<std::vector<std::string>>;

  explicit UrlOpener(Commands commands = {{"xdg-open"}, {"gio", "open"}}) : commands_(std::move(commands)) {}
  UrlOpener(const UrlOpener&) = delete;
  UrlOpener& operator=(const UrlOpener&) = delete;
  ~UrlOpener() { reap(); }

  // False when there is none of these programs. What it then does, and whether it fails, stays unknown.
  bool open(const std::string& url);
  // How many have not ended yet.
  std::size_t running() {
    reap();
    return started_.size();
  }

 private:
  void reap();

  Commands commands_;
  std::vector<pid_t> started_;
};

}  // namespace tarnix::linux_desktop
