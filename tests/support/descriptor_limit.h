#pragma once

#include <sys/resource.h>

namespace tarnix::test {

// Lets the process open nothing, as when it has opened too much. Touch nothing with a table of virtual
// functions meanwhile: the sanitizer opens a pipe to look at such a table.
class DescriptorLimit {
 public:
  DescriptorLimit() {
    ::getrlimit(RLIMIT_NOFILE, &former_);
    const rlimit lowered{0, former_.rlim_max};
    ::setrlimit(RLIMIT_NOFILE, &lowered);
  }
  DescriptorLimit(const DescriptorLimit&) = delete;
  DescriptorLimit& operator=(const DescriptorLimit&) = delete;
  ~DescriptorLimit() { ::setrlimit(RLIMIT_NOFILE, &former_); }

 private:
  rlimit former_{};
};

}  // namespace tarnix::test
