#include "backends/qt/previews/previewer_process.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QFileInfo>
#include <QSocketNotifier>
#include <csignal>
#include <utility>

#include "previewer/protocol/messages.h"

namespace tarnix::qt {
namespace {

// Above those that the process is given.
constexpr int kLeastOwnDescriptor = 10;

std::string& chosenProgram() {
  static std::string program;
  return program;
}

// Beside this program in the build tree, where it is installed otherwise.
std::string previewerProgram() {
  if (!chosenProgram().empty()) return chosenProgram();
  const QString folder = QCoreApplication::applicationDirPath();
  const QString beside = folder + QStringLiteral("/tarnix-previewer");
  if (QFileInfo(beside).isExecutable()) return beside.toStdString();
  return (folder + QStringLiteral("/" TARNIX_LIBEXEC_FROM_BIN "/tarnix/tarnix-previewer")).toStdString();
}

class PreviewerSpawnSettings {
 public:
  PreviewerSpawnSettings(int channel, int bytes) {
    posix_spawnattr_init(&attributes);
    sigset_t none;
    sigemptyset(&none);
    posix_spawnattr_setsigmask(&attributes, &none);
    sigset_t usual;
    sigemptyset(&usual);
    for (const int each : {SIGINT, SIGTERM, SIGHUP, SIGPIPE, SIGCHLD}) sigaddset(&usual, each);
    posix_spawnattr_setsigdefault(&attributes, &usual);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    posix_spawn_file_actions_init(&actions);
    for (const int each : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
      posix_spawn_file_actions_addopen(&actions, each, "/dev/null", O_RDWR, 0);
    posix_spawn_file_actions_adddup2(&actions, channel, previewing::kChannelDescriptor);
    if (bytes >= 0) posix_spawn_file_actions_adddup2(&actions, bytes, previewing::kBytesDescriptor);
    posix_spawn_file_actions_addclosefrom_np(&actions, previewing::kBytesDescriptor + (bytes >= 0 ? 1 : 0));
  }
  PreviewerSpawnSettings(const PreviewerSpawnSettings&) = delete;
  PreviewerSpawnSettings& operator=(const PreviewerSpawnSettings&) = delete;
  ~PreviewerSpawnSettings() {
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
  }

  posix_spawnattr_t attributes;
  posix_spawn_file_actions_t actions;
};

int aboveOthers(int descriptor) {
  return descriptor < 0 ? -1 : fcntl(descriptor, F_DUPFD_CLOEXEC, kLeastOwnDescriptor);
}

// A killed process until it can be buried, which takes long where it hangs in the kernel.
class DyingProcess : public QObject {
 public:
  explicit DyingProcess(pid_t id)
      : QObject(QCoreApplication::instance()),
        id_(id),
        descriptor_(static_cast<int>(syscall(SYS_pidfd_open, id, 0))),
        ended_(descriptor_, QSocketNotifier::Read) {
    ++count;
    connect(&ended_, &QSocketNotifier::activated, this, [this] {
      ended_.setEnabled(false);
      deleteLater();
    });
  }
  ~DyingProcess() override {
    --count;
    waitpid(id_, nullptr, WNOHANG);
    if (descriptor_ >= 0) close(descriptor_);
  }

  static int count;

 private:
  pid_t id_;
  int descriptor_;
  QSocketNotifier ended_;
};

int DyingProcess::count = 0;

}  // namespace

void PreviewerProcess::setProgram(std::string path) { chosenProgram() = std::move(path); }

int PreviewerProcess::dying() { return DyingProcess::count; }

std::unique_ptr<PreviewerProcess> PreviewerProcess::start(int bytes) {
  int ends[2];
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) return nullptr;
  fcntl(ends[0], F_SETFL, O_NONBLOCK);
  const int theirs = aboveOthers(ends[1]);
  const int handed = aboveOthers(bytes);
  std::string program = previewerProgram();
  char* const arguments[] = {program.data(), nullptr};
  pid_t id = 0;
  const bool isStarted = [&] {
    const PreviewerSpawnSettings settings(theirs, handed);
    return theirs >= 0 && posix_spawn(&id, program.c_str(), &settings.actions, &settings.attributes,
                                      arguments, environ) == 0;
  }();
  for (const int each : {ends[1], theirs, handed, isStarted ? -1 : ends[0]}) {
    if (each >= 0) close(each);
  }
  return isStarted ? std::unique_ptr<PreviewerProcess>(new PreviewerProcess(id, ends[0])) : nullptr;
}

PreviewerProcess::~PreviewerProcess() {
  kill(id_, SIGKILL);
  close(channel_);
  new DyingProcess(id_);
}

}  // namespace tarnix::qt
