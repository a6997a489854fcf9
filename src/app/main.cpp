#include <sys/resource.h>

#include <chrono>
#include <cstdlib>
#include <iostream>

#include "app/memory_return.h"
#include "app/options.h"
#include "app/session_platform.h"
#include "backends/linux/poll_driver.h"
#include "backends/qt/application.h"
#include "backends/qt/file_manager.h"
#include "backends/qt/run_loop_driver.h"
#include "backends/qt/window.h"
#include "backends/x11/clipboard/pasteboard.h"
#include "backends/x11/session.h"
#include "history/content_view.h"
#include "platform/swiftui/view_graph.h"

namespace tarnix {
namespace {

using namespace std::chrono_literals;

// How long the start may wait for what already lies on the clipboard.
constexpr auto kFirstSnapshotLimit = 250ms;

// A core file would put the history on the disk.
void forbidCoreDumps() {
  const rlimit none{0, 0};
  setrlimit(RLIMIT_CORE, &none);
}

void say(const std::string& text) { std::cerr << "tarnix: " << text << std::endl; }

void sayWithoutDisplay(const std::string& reason) {
  const char* const display = std::getenv("DISPLAY");
  const bool isNamed = display != nullptr && *display != '\0';
  say(isNamed ? reason : "there is no X11 session to run in, since DISPLAY is not set");
}

// Shows the window until the user quits or the session ends.
int runWindow(qt::Application& application, x11::Session& session, RunLoop& loop) {
  session.pasteboard()->awaitFirstSnapshot(kFirstSnapshotLimit);
  const ContentView view;
  ViewGraph graph(View(view), loop);
  session.pasteboard()->setFirstContentCame([&view] { view.takeLateSeed(); });
  const MemoryReturn memoryReturn(view, graph, loop);
  qt::Window window(graph);
  window.show();
  bool isLost = false;
  session.setClosed([&] {
    say("the connection to the X server was lost");
    isLost = true;
    application.quit();
  });
  const int exitCode = application.run();
  session.pasteboard()->handOver();
  return isLost ? EXIT_FAILURE : exitCode;
}

int run(int argc, char** argv) {
  const auto loop = std::make_shared<RunLoop>(linux_desktop::steadyClock());
  // Opened before the toolkit, which would end the program by itself; the first look at the clipboard goes on
  // meanwhile.
  auto session = x11::Session::open("", *loop);
  if (!session) {
    sayWithoutDisplay(session.error().detail);
    return EXIT_FAILURE;
  }
  const PlatformScope platform(sessionPlatform(**session, loop, qt::askFileManager));
  qt::Application application(argc, argv);
  if (!application.isListeningForSignals())
    say("signals can't be listened for and end the program uncleanly");
  const qt::RunLoopDriver driver(*loop);
  return runWindow(application, **session, *loop);
}

}  // namespace
}  // namespace tarnix

int main(int argc, char** argv) {
  if (const auto answer = tarnix::answerCommandLine(argc, argv)) {
    (answer->exitCode == EXIT_SUCCESS ? std::cout : std::cerr) << answer->text;
    return answer->exitCode;
  }
  tarnix::forbidCoreDumps();
  tarnix::MemoryReturn::configureAllocator();
  return tarnix::run(argc, argv);
}
