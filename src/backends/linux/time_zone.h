#pragma once

#include "platform/foundation/calendar.h"

namespace tarnix::linux_desktop {

// That of the environment's TZ, else the system's, which may change while the program runs.
class SystemTimeZone final : public NSTimeZone {
 public:
  std::chrono::seconds secondsFromGMT(const Date& moment) const override;
};

}  // namespace tarnix::linux_desktop
