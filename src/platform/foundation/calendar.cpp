#include "platform/foundation/calendar.h"

#include <cmath>

namespace tarnix {
namespace {

// Some 30,000 years in either direction.
constexpr double kFarthest = 1e12;

double secondsOf(NSCalendar::Component component) {
  switch (component) {
    case NSCalendar::Component::second:
      return 1;
    case NSCalendar::Component::minute:
      return 60;
    case NSCalendar::Component::hour:
      return 3600;
    case NSCalendar::Component::day:
      return 86400;
    case NSCalendar::Component::weekOfYear:
      return 7 * 86400;
  }
  return 1;
}

// Days and what is made of them are counted by the clock on the wall.
bool isLocal(NSCalendar::Component component) {
  return component == NSCalendar::Component::day || component == NSCalendar::Component::weekOfYear;
}

bool isRepresentable(const Date& date) { return std::abs(date.sinceReferenceDate.count()) < kFarthest; }

}  // namespace

std::chrono::duration<double> NSCalendar::offsetAt(const Date& date) const {
  return timeZone_->secondsFromGMT(date);
}

std::optional<Date> NSCalendar::dateByAdding(Component component, int value, const Date& date) const {
  const Date::Interval change{value * secondsOf(component)};
  if (!isRepresentable(date) || !isRepresentable(date + change)) return std::nullopt;
  if (!isLocal(component)) return date + change;
  const Date::Interval before = offsetAt(date);
  const Date::Interval after = offsetAt(date + change);
  // Where the clocks were changed in between, the difference may lead over the change once more.
  const Date moved = date + change + (before - after);
  return moved + (after - offsetAt(moved));
}

std::optional<long> NSCalendar::components(Component component, const Date& from, const Date& to) const {
  if (!isRepresentable(from) || !isRepresentable(to)) return std::nullopt;
  Date::Interval elapsed = to - from;
  if (isLocal(component)) elapsed += offsetAt(to) - offsetAt(from);
  return static_cast<long>(std::trunc(elapsed.count() / secondsOf(component)));
}

}  // namespace tarnix
