#include "desktop/desktop_fixture.h"

#include <atspi/atspi.h>

#include <cstdlib>
#include <stdexcept>
#include <thread>

namespace tarnix::test {
namespace {

using namespace std::chrono_literals;

// Generous, since many programs may start at once on a small machine.
constexpr auto kStartLimit = 20s;

std::string firstLine(Process& process, const std::string& what) {
  const auto line = process.readLine(kStartLimit);
  if (!line) throw std::runtime_error(what + " did not start");
  return *line;
}

void makePrivate(const std::filesystem::path& folder) {
  std::filesystem::create_directories(folder);
  std::filesystem::permissions(folder, std::filesystem::perms::owner_all);
}

}  // namespace

std::string programUnderTest() {
  const char* const given = std::getenv("TARNIX_PROGRAM");
  return given != nullptr ? given : TARNIX_PROGRAM;
}

bool eventually(const std::function<bool()>& condition, std::chrono::milliseconds limit) {
  const auto deadline = std::chrono::steady_clock::now() + limit;
  while (!condition()) {
    if (std::chrono::steady_clock::now() >= deadline) return false;
    std::this_thread::sleep_for(10ms);
  }
  return true;
}

TemporaryFolder::TemporaryFolder() {
  std::string pattern = std::filesystem::temp_directory_path() / "tarnix-test-XXXXXX";
  if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary folder");
  path_ = pattern;
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

const AccessibilityBus& AccessibilityBus::shared() {
  static const AccessibilityBus kBus;
  return kBus;
}

AccessibilityBus::AccessibilityBus() {
  makePrivate(runtime_.path());
  daemon_.emplace(
      std::vector<std::string>{"dbus-daemon", "--session", "--nofork", "--nopidfile", "--print-address=1"},
      Process::Options{.environment = {{"XDG_RUNTIME_DIR", runtime_.path()},
                                       {"DBUS_SESSION_BUS_ADDRESS", ""},
                                       {"DISPLAY", ""},
                                       {"LD_PRELOAD", ""}}});
  address_ = firstLine(*daemon_, "The message bus");
  setenv("DBUS_SESSION_BUS_ADDRESS", address_.c_str(), 1);
  unsetenv("DISPLAY");  // The property of a display would name another bus.
  if (atspi_init() > 1) throw std::runtime_error("The accessibility bus did not start");
}

Screen::Screen()
    : server_({"Xvfb", "-displayfd", "1", "-screen", "0", "1280x800x24", "-noreset", "-nolisten", "tcp"}),
      display_(":" + firstLine(server_, "Xvfb")) {
  manager_.emplace(std::vector<std::string>{"openbox", "--sm-disable"},
                   Process::Options{.environment = {{"DISPLAY", display_}}, .isOutputRead = false});
  // A window that is mapped before there is a window manager gets no keyboard.
  const auto isManaged = [&] {
    return runProgram({"xprop", "-display", display_, "-root", "_NET_SUPPORTING_WM_CHECK"}, {})
               .output.find("window id") != std::string::npos;
  };
  if (!eventually(isManaged, kStartLimit)) throw std::runtime_error("openbox did not start");
}

DesktopTest::DesktopTest() {
  AccessibilityBus::shared();
  makePrivate(home() / "runtime");
  for (const char* folder : {".config", ".local/share", ".cache"}) makePrivate(home() / folder);
}

Process::Environment DesktopTest::environment() const {
  return {{"DISPLAY", screen_.display()},
          {"HOME", home()},
          {"XDG_CONFIG_HOME", home() / ".config"},
          {"XDG_DATA_HOME", home() / ".local/share"},
          {"XDG_CACHE_HOME", home() / ".cache"},
          {"XDG_RUNTIME_DIR", home() / "runtime"},
          {"WAYLAND_DISPLAY", ""},
          {"QT_QPA_PLATFORM", "xcb"},
          {"QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1"},
          {"LANG", "C.UTF-8"}};
}

WindowReader DesktopTest::openProgram(const std::vector<std::string>& arguments) {
  std::vector<std::string> command = {programUnderTest()};
  command.insert(command.end(), arguments.begin(), arguments.end());
  program_.emplace(command, Process::Options{.environment = environment(), .isOutputRead = false});
  const WindowReader reader(program_->id());
  if (!eventually([&] { return reader.isOpen(); }, kStartLimit))
    ADD_FAILURE() << "The program shows no window";
  return reader;
}

std::optional<int> DesktopTest::closeProgram() {
  // A key that is held for it may close the next window as well.
  std::string window = run({"xdotool", "search", "--onlyvisible", "--all", "--pid",
                            std::to_string(program_->id()), "--name", "."})
                           .output;
  window.erase(std::min(window.find('\n'), window.size()));
  run({"wmctrl", "-i", "-c", window});
  return program_->wait(5s);
}

void DesktopTest::press(const std::vector<std::string>& keys) {
  // A key that comes as soon as the window is active is now and then kept by the window manager until the
  // next one.
  std::vector<std::string> command = {
      "xdotool", "search", "--onlyvisible",  "--all",  "--pid", std::to_string(program_->id()),
      "--name",  ".",      "windowactivate", "--sync", "sleep", "0.2",
      "key"};
  command.insert(command.end(), keys.begin(), keys.end());
  run(std::move(command));
}

Process& DesktopTest::start(std::vector<std::string> command) {
  return others_.emplace_back(command, Process::Options{.environment = environment()});
}

Outcome DesktopTest::run(std::vector<std::string> command, std::string_view input) {
  return runProgram(command, input, {.environment = environment()});
}

bool DesktopTest::runIntoBackground(std::vector<std::string> command, std::string_view input) {
  Process& process =
      others_.emplace_back(command, Process::Options{.environment = environment(), .isOutputRead = false});
  process.feed(input);
  return process.wait(10s) == 0;
}

bool DesktopTest::copyWithXclip(std::string_view text) {
  return runIntoBackground({"xclip", "-selection", "clipboard", "-in"}, text);
}

std::string DesktopTest::pasteWithXclip() {
  return run({"xclip", "-selection", "clipboard", "-out", "-target", "UTF8_STRING"}).output;
}

Process& DesktopTest::copyWithScriptedOwner(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), TARNIX_SCRIPTED_OWNER);
  Process& owner = start(std::move(arguments));
  if (!owner.waitForLine("owner", kStartLimit)) ADD_FAILURE() << "The scripted owner has no clipboard";
  return owner;
}

}  // namespace tarnix::test
