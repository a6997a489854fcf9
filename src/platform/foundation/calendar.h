#pragma once

#include <chrono>
#include <memory>
#include <optional>

#include "platform/foundation/date.h"

namespace tarnix {

// How far the clocks of a place are ahead of UTC. They may be put forward and back.
class NSTimeZone {
 public:
  virtual ~NSTimeZone() = default;
  // At a moment of UTC.
  virtual std::chrono::seconds secondsFromGMT(const Date& moment) const = 0;

  // The user's.
  static const NSTimeZone& systemTimeZone();
};

// Counts time as people do: a day leads to the same time of the day before or after, though that may be 23 or
// 25 hours away.
class NSCalendar {
 public:
  enum class Component { second, minute, hour, day, weekOfYear };

  explicit NSCalendar(const NSTimeZone& timeZone) : timeZone_(&timeZone) {}
  // The user's, for as long as the platform stays installed.
  static NSCalendar currentCalendar() { return NSCalendar(NSTimeZone::systemTimeZone()); }

  // Absent for a moment beyond all dates.
  std::optional<Date> dateByAdding(Component component, int value, const Date& date) const;
  // How many whole ones lie between, negative where `to` is the earlier. Absent as above.
  std::optional<long> components(Component component, const Date& from, const Date& to) const;

 private:
  std::chrono::duration<double> offsetAt(const Date& date) const;

  const NSTimeZone* timeZone_;
};

}  // namespace tarnix
