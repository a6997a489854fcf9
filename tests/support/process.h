#pragma once

#include <sys/types.h>

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarnix::test {

// A program that a test runs. It and what it starts end with this object at the latest, and also when the
// test itself dies.
class Process {
 public:
  using Environment = std::map<std::string, std::string>;

  struct Options {
    // Added to the environment of the test; an empty value takes the variable away.
    Environment environment;
    // Without it, what the program prints goes nowhere. A program that leaves a child behind keeps its output
    // open, so that reading to the end would wait for the child.
    bool isOutputRead = true;
  };

  // The first word is looked for on the path. Throws when there is no such program.
  explicit Process(const std::vector<std::string>& command) : Process(command, Options{}) {}
  Process(const std::vector<std::string>& command, const Options& options);
  Process(Process&& other) noexcept;
  Process& operator=(Process&& other) noexcept;
  ~Process();

  pid_t id() const { return id_; }
  bool isRunning();

  // Gives the program all of `input` and then the end of it.
  void feed(std::string_view input);
  // A line that the program printed, without its end; absent when none comes in time.
  std::optional<std::string> readLine(std::chrono::milliseconds limit);
  // What it prints until it closes its output or the time is up.
  std::string readAll(std::chrono::milliseconds limit);
  // Waits for a line that is exactly `line`; false when it does not come in time.
  bool waitForLine(std::string_view line, std::chrono::milliseconds limit);

  // Its exit code, or 128 and the signal that ended it; absent when it still runs at the end.
  std::optional<int> wait(std::chrono::milliseconds limit);
  // Asks it to end, and after 2 s makes it end.
  void end();

 private:
  bool readMore(std::chrono::milliseconds limit);
  void closeInput();
  void killGroup(int signal);

  pid_t id_ = -1;
  int input_ = -1;
  int output_ = -1;
  std::string unread_;
  std::optional<int> exitCode_;
};

// What a short run of a program came to.
struct Outcome {
  int exitCode = -1;  // -1 when it did not end in time and was ended.
  std::string output;
};
Outcome runProgram(const std::vector<std::string>& command, std::string_view input = {},
                   const Process::Options& options = {},
                   std::chrono::milliseconds limit = std::chrono::seconds(10));

}  // namespace tarnix::test
