#include "previewer/limits.h"

#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>

#include "previewer/protocol/messages.h"

namespace tarnix::previewer {
namespace {

constexpr rlim_t kMemory = 56 * 1024 * 1024;
constexpr rlim_t kProcessorSeconds = 5;

// What RLIMIT_DATA counts, proc(5): the sixth number of statm, in pages, which holds the stack as well.
rlim_t dataInUse() {
  unsigned long pages = 0;
  if (std::FILE* const file = std::fopen("/proc/self/statm", "re")) {
    if (std::fscanf(file, "%*u %*u %*u %*u %*u %lu", &pages) != 1) pages = 0;
    std::fclose(file);
  }
  return pages * static_cast<rlim_t>(sysconf(_SC_PAGESIZE));
}

void limit(__rlimit_resource resource, rlim_t soft) {
  rlimit limits{};
  if (getrlimit(resource, &limits) != 0) return;
  limits.rlim_cur = std::min(soft, limits.rlim_max);
  setrlimit(resource, &limits);
}

}  // namespace

void shutOff() {
  limit(RLIMIT_CORE, 0);
  close_range(static_cast<unsigned>(previewing::kBytesDescriptor) + 1, ~0U, 0);
  const pid_t parent = getppid();
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
  // The parent may have gone before the signal was asked for.
  if (getppid() != parent) std::_Exit(EXIT_FAILURE);
}

void limitMemory() {
  if (const rlim_t used = dataInUse(); used > 0) limit(RLIMIT_DATA, used + kMemory);
}

void allowProcessorTime() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  const auto used = usage.ru_utime.tv_sec + usage.ru_stime.tv_sec + 1;
  limit(RLIMIT_CPU, static_cast<rlim_t>(used) + kProcessorSeconds);
}

}  // namespace tarnix::previewer
