#include "backends/linux/time_zone.h"

#include <cmath>
#include <ctime>

namespace tarnix::linux_desktop {

std::chrono::seconds SystemTimeZone::secondsFromGMT(const Date& moment) const {
  const double sinceEpoch = std::floor(moment.sinceReferenceDate.count() +
                                       static_cast<double>(kReferenceDate.time_since_epoch().count()));
  const auto time = static_cast<std::time_t>(sinceEpoch);
  tzset();
  std::tm local{};
  return std::chrono::seconds(localtime_r(&time, &local) == nullptr ? 0 : local.tm_gmtoff);
}

}  // namespace tarnix::linux_desktop
