#pragma once

#include <string>

#include "platform/foundation/result.h"

namespace tarnix::x11 {

struct Error {
  // `unavailable`: the server or one of its extensions is not there. `closed`: it was, and went away.
  enum class Kind { unavailable, timedOut, closed, failed };
  Kind kind = Kind::failed;
  // For people; never holds content of the clipboard.
  std::string detail;
};

template <typename Value>
using Result = tarnix::Result<Value, Error>;

}  // namespace tarnix::x11
