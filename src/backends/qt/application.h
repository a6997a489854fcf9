#pragma once

#include <memory>

namespace tarnix::qt {

enum class ColorScheme;

// The program on the toolkit's side: its event loop, name and look. One at a time, made before any window and
// outliving them all. SIGTERM, SIGINT and SIGHUP end it like the user's own quitting.
class Application {
 public:
  // Both are borrowed and may be changed: the toolkit takes out its own arguments.
  Application(int& argc, char** argv);
  Application(const Application&) = delete;
  Application& operator=(const Application&) = delete;
  ~Application();

  // Runs until `quit` or until the last window is closed. The exit status of the program.
  int run();
  void quit();
  // False where the system refused it: a signal then ends the program at once, and nothing is put in order.
  bool isListeningForSignals() const;

  // Overrides the desktop's colour scheme.
  void setColorScheme(ColorScheme scheme);

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace tarnix::qt
