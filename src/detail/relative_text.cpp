#include "detail/relative_text.h"

#include <string>

#include "platform/foundation/calendar.h"

namespace tarnix {
namespace {

using Component = NSCalendar::Component;

struct Unit {
  Component limit;  // So many of these ago begins the next unit.
  int count;
  Component component;
  const char* suffix;
};

constexpr Unit kUnits[] = {
    {Component::minute, 1, Component::second, " sec ago"},
    {Component::hour, 1, Component::minute, " min ago"},
    {Component::day, 1, Component::hour, " hrs ago"},
    {Component::day, 7, Component::day, " days ago"},
};
constexpr Unit kWeeks{Component::weekOfYear, 0, Component::weekOfYear, " weeks ago"};

bool isWithin(const Unit& unit, const NSCalendar& calendar, const Date& date) {
  const auto limit = calendar.dateByAdding(unit.limit, -unit.count, Date::now());
  return limit && *limit < date;
}

}  // namespace

String relativeText(const Date& date) {
  const NSCalendar calendar = NSCalendar::currentCalendar();
  Unit unit = kWeeks;
  for (const Unit& each : kUnits) {
    if (!isWithin(each, calendar, date)) continue;
    unit = each;
    break;
  }
  const long count = calendar.components(unit.component, date, Date::now()).value_or(0);
  return String(std::to_string(count) + unit.suffix);
}

}  // namespace tarnix
