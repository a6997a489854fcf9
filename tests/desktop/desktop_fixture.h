#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "desktop/window_reader.h"
#include "support/process.h"

namespace tarnix::test {

// The file that the environment names as TARNIX_PROGRAM, else the program of this very build.
std::string programUnderTest();

// Polls until `condition` holds; false when it does not in time.
bool eventually(const std::function<bool()>& condition,
                std::chrono::milliseconds limit = std::chrono::seconds(5));

// A folder that is empty at first and gone at the end.
class TemporaryFolder {
 public:
  TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder();

  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

// A message bus with the accessibility bus on it, for this process and the programs that it starts. There is
// one for all tests of a process, since the reading library connects once and for all.
class AccessibilityBus {
 public:
  static const AccessibilityBus& shared();

  const std::string& address() const { return address_; }

 private:
  AccessibilityBus();

  TemporaryFolder runtime_;
  std::optional<Process> daemon_;
  std::string address_;
};

// A virtual screen with a window manager.
class Screen {
 public:
  Screen();

  const std::string& display() const { return display_; }
  // Ends the X server at once.
  void kill() { server_.end(); }

 private:
  Process server_;
  std::string display_;
  std::optional<Process> manager_;
};

// A desktop for programs as users run them: a screen, a window manager, a message bus, accessibility, and a
// home of its own. Nothing of the user's is read or changed. All programs end with the test.
class DesktopTest : public ::testing::Test {
 protected:
  DesktopTest();

  // Starts the program under test and waits for its window.
  WindowReader openProgram(const std::vector<std::string>& arguments = {});
  // Asks the window manager to close the program's window, as the user does, and waits for the program's end.
  // Absent when it does not end.
  std::optional<int> closeProgram();
  // Makes the program's window the active one and presses keys in it, in the notation of xdotool.
  void press(const std::vector<std::string>& keys);
  Process& program() { return *program_; }

  // Starts another program, whose output can be read.
  Process& start(std::vector<std::string> command);
  // Runs another program to its end.
  Outcome run(std::vector<std::string> command, std::string_view input = {});
  // Runs a program that goes on in the background; false when it fails.
  bool runIntoBackground(std::vector<std::string> command, std::string_view input = {});

  bool copyWithXclip(std::string_view text);
  std::string pasteWithXclip();
  // Starts the scripted owner and waits until it owns the clipboard.
  Process& copyWithScriptedOwner(std::vector<std::string> arguments);

  Process::Environment environment() const;
  std::filesystem::path home() const { return home_.path(); }
  Screen& screen() { return screen_; }

 private:
  TemporaryFolder home_;
  Screen screen_;
  std::list<Process> others_;
  std::optional<Process> program_;
};

}  // namespace tarnix::test
