#include "backends/x11/x_server.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <stdexcept>

extern char** environ;

namespace tarnix::x11::testing {
namespace {

// The server writes its display number and a line feed when it is ready for clients.
std::string readLine(int descriptor) {
  std::string line;
  for (char byte = 0; read(descriptor, &byte, 1) == 1 && byte != '\n';) line += byte;
  return line;
}

pid_t startServer(int output) {
  const std::string number = std::to_string(output);
  const std::array<const char*, 10> arguments{"Xvfb", "-displayfd",  number.c_str(), "-screen",
                                              "0",    "1280x800x24", "-noreset",     "-nolisten",
                                              "tcp",  nullptr};
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
  pid_t process = -1;
  const int failure =
      posix_spawnp(&process, "Xvfb", &actions, nullptr, const_cast<char* const*>(arguments.data()), environ);
  posix_spawn_file_actions_destroy(&actions);
  if (failure != 0) throw std::runtime_error("Xvfb can't be started");
  return process;
}

}  // namespace

XServer::XServer() {
  std::array<int, 2> ends{};
  if (pipe(ends.data()) != 0) throw std::runtime_error("no pipe");
  process_ = startServer(ends[1]);
  close(ends[1]);
  const std::string number = readLine(ends[0]);
  close(ends[0]);
  if (number.empty()) throw std::runtime_error("Xvfb did not start");
  display_ = ":" + number;
}

XServer::~XServer() { kill(); }

void XServer::kill() {
  if (process_ < 0) return;
  ::kill(process_, SIGKILL);
  waitpid(process_, nullptr, 0);
  process_ = -1;
}

void XServer::pause() { ::kill(process_, SIGSTOP); }

void XServer::resume() { ::kill(process_, SIGCONT); }

}  // namespace tarnix::x11::testing
