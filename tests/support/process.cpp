#include "support/process.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <thread>
#include <utility>

namespace tarnix::test {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

milliseconds left(Clock::time_point deadline) {
  return std::max(milliseconds(0), std::chrono::ceil<milliseconds>(deadline - Clock::now()));
}

std::array<int, 2> openPipe() {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe to be had");
  return ends;
}

std::vector<char*> pointers(std::vector<std::string>& words) {
  std::vector<char*> result;
  for (std::string& word : words) result.push_back(word.data());
  result.push_back(nullptr);
  return result;
}

std::vector<std::string> mergedEnvironment(const Process::Environment& changes) {
  Process::Environment merged;
  for (char** entry = environ; *entry != nullptr; ++entry) {
    const std::string_view text(*entry);
    const std::size_t sign = text.find('=');
    if (sign != std::string_view::npos) merged[std::string(text.substr(0, sign))] = text.substr(sign + 1);
  }
  for (const auto& [name, value] : changes) merged[name] = value;
  std::vector<std::string> words;
  for (const auto& [name, value] : merged) {
    if (!value.empty()) words.push_back(name + "=" + value);
  }
  return words;
}

struct Ends {
  int input;
  int output;  // -1 for nowhere.
  int failure;
};

// In the child, where nothing may be allocated any more. The group makes children of the program end with it.
[[noreturn]] void become(char* const* command, char* const* environment, const Ends& ends) {
  setpgid(0, 0);
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  signal(SIGPIPE, SIG_DFL);
  const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
  dup2(ends.input, STDIN_FILENO);
  dup2(ends.output < 0 ? nowhere : ends.output, STDOUT_FILENO);
  if (getenv("TARNIX_TEST_VERBOSE") == nullptr) dup2(nowhere, STDERR_FILENO);
  execvpe(command[0], command, environment);
  const int error = errno;
  [[maybe_unused]] const ssize_t written = write(ends.failure, &error, sizeof error);
  _exit(127);
}

int exitCodeOf(int status) { return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status); }

}  // namespace

Process::Process(const std::vector<std::string>& command, const Options& options) {
  signal(SIGPIPE, SIG_IGN);  // A program that does not read its input is no reason to die.
  std::vector<std::string> words = command;
  std::vector<std::string> variables = mergedEnvironment(options.environment);
  const std::vector<char*> arguments = pointers(words);
  const std::vector<char*> environment = pointers(variables);
  const auto input = openPipe(), output = openPipe(), failure = openPipe();
  id_ = fork();
  if (id_ == 0) {
    become(arguments.data(), environment.data(),
           {input[0], options.isOutputRead ? output[1] : -1, failure[1]});
  }
  setpgid(id_, id_);
  for (const int end : {input[0], output[1], failure[1]}) close(end);
  input_ = input[1];
  output_ = output[0];
  int error = 0;
  const bool hasFailed = read(failure[0], &error, sizeof error) == sizeof error;
  close(failure[0]);
  if (!hasFailed) return;
  end();
  throw std::runtime_error(command.front() + " can't be started: " + std::strerror(error));
}

Process::Process(Process&& other) noexcept
    : id_(std::exchange(other.id_, -1)),
      input_(std::exchange(other.input_, -1)),
      output_(std::exchange(other.output_, -1)),
      unread_(std::move(other.unread_)),
      exitCode_(other.exitCode_) {}

Process& Process::operator=(Process&& other) noexcept {
  std::swap(id_, other.id_);
  std::swap(input_, other.input_);
  std::swap(output_, other.output_);
  std::swap(unread_, other.unread_);
  std::swap(exitCode_, other.exitCode_);
  return *this;
}

Process::~Process() {
  end();
  closeInput();
  if (output_ >= 0) close(output_);
}

bool Process::isRunning() { return id_ > 0 && !wait(milliseconds(0)); }

void Process::feed(std::string_view input) {
  while (!input.empty()) {
    const ssize_t written = write(input_, input.data(), input.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) break;
    input.remove_prefix(static_cast<std::size_t>(written));
  }
  closeInput();
}

void Process::closeInput() {
  if (input_ >= 0) close(std::exchange(input_, -1));
}

// False at the end of the output and when nothing comes in time.
bool Process::readMore(milliseconds limit) {
  pollfd readable{output_, POLLIN, 0};
  if (poll(&readable, 1, static_cast<int>(limit.count())) <= 0) return false;
  std::array<char, 65536> buffer{};
  const ssize_t size = read(output_, buffer.data(), buffer.size());
  if (size <= 0) return false;
  unread_.append(buffer.data(), static_cast<std::size_t>(size));
  return true;
}

std::optional<std::string> Process::readLine(milliseconds limit) {
  const auto deadline = Clock::now() + limit;
  std::size_t end = 0;
  while ((end = unread_.find('\n')) == std::string::npos) {
    if (!readMore(left(deadline))) return std::nullopt;
  }
  std::string line = unread_.substr(0, end);
  unread_.erase(0, end + 1);
  return line;
}

std::string Process::readAll(milliseconds limit) {
  const auto deadline = Clock::now() + limit;
  while (readMore(left(deadline))) {
  }
  return std::exchange(unread_, {});
}

bool Process::waitForLine(std::string_view line, milliseconds limit) {
  const auto deadline = Clock::now() + limit;
  while (const auto next = readLine(left(deadline))) {
    if (*next == line) return true;
  }
  return false;
}

std::optional<int> Process::wait(milliseconds limit) {
  const auto deadline = Clock::now() + limit;
  while (id_ > 0 && !exitCode_) {
    int status = 0;
    if (waitpid(id_, &status, WNOHANG) == id_) exitCode_ = exitCodeOf(status);
    if (exitCode_ || Clock::now() >= deadline) break;
    std::this_thread::sleep_for(milliseconds(1));
  }
  return exitCode_;
}

void Process::killGroup(int signal) { kill(-id_, signal); }

void Process::end() {
  if (id_ <= 0) return;
  killGroup(SIGTERM);
  if (!wait(std::chrono::seconds(2))) {
    killGroup(SIGKILL);
    wait(std::chrono::seconds(10));
  }
  killGroup(SIGKILL);  // Children that it left behind.
  id_ = -1;
}

Outcome runProgram(const std::vector<std::string>& command, std::string_view input,
                   const Process::Options& options, milliseconds limit) {
  const auto deadline = Clock::now() + limit;
  Process program(command, options);
  program.feed(input);
  Outcome outcome;
  if (options.isOutputRead) outcome.output = program.readAll(limit);
  outcome.exitCode = program.wait(left(deadline)).value_or(-1);
  return outcome;
}

}  // namespace tarnix::test
