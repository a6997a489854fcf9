#include "backends/linux/applications/url_opener.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <csignal>

#include <optional>

namespace tarnix::linux_desktop {
namespace {

// A process that starts with no signal blocked or ignored, in a session of its own, and reads nothing.
class SpawnSettings {
 public:
  SpawnSettings() {
    posix_spawnattr_init(&attributes);
    sigset_t none;
    sigemptyset(&none);
    posix_spawnattr_setsigmask(&attributes, &none);
    sigset_t usual;
    sigemptyset(&usual);
    for (const int each : {SIGINT, SIGTERM, SIGHUP, SIGPIPE, SIGCHLD}) sigaddset(&usual, each);
    posix_spawnattr_setsigdefault(&attributes, &usual);
    posix_spawnattr_setflags(&attributes,
                             POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSID);
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  }
  SpawnSettings(const SpawnSettings&) = delete;
  SpawnSettings& operator=(const SpawnSettings&) = delete;
  ~SpawnSettings() {
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
  }

  posix_spawnattr_t attributes;
  posix_spawn_file_actions_t actions;
};

std::optional<pid_t> spawn(std::vector<std::string> command) {
  const SpawnSettings settings;
  std::vector<char*> arguments;
  for (std::string& each : command) arguments.push_back(each.data());
  arguments.push_back(nullptr);
  pid_t process = 0;
  const int error = posix_spawnp(&process, arguments.front(), &settings.actions, &settings.attributes,
                                 arguments.data(), environ);
  return error == 0 ? std::optional(process) : std::nullopt;
}

}  // namespace

bool UrlOpener::open(const std::string& url) {
  reap();
  for (std::vector<std::string> command : commands_) {
    command.push_back(url);
    const auto process = spawn(std::move(command));
    if (!process) continue;
    started_.push_back(*process);
    return true;
  }
  return false;
}

void UrlOpener::reap() {
  std::erase_if(started_, [](pid_t each) { return waitpid(each, nullptr, WNOHANG) != 0; });
}

}  // namespace tarnix::linux_desktop
