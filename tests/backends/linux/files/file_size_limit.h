#pragma once

#include <signal.h>
#include <sys/resource.h>

namespace tarnix::linux_desktop {

// Ends what the process may write to a file, as a full disk would.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t limit) : formerHandler_(::signal(SIGXFSZ, SIG_IGN)) {
    ::getrlimit(RLIMIT_FSIZE, &former_);
    const rlimit lowered{limit, former_.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &lowered);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;
  ~FileSizeLimit() {
    ::setrlimit(RLIMIT_FSIZE, &former_);
    ::signal(SIGXFSZ, formerHandler_);
  }

 private:
  rlimit former_{};
  void (*formerHandler_)(int);
};

}  // namespace tarnix::linux_desktop
