#pragma once

#include <chrono>
#include <compare>
#include <functional>

namespace tarnix {

inline constexpr std::chrono::sys_seconds kReferenceDate =
    std::chrono::sys_days(std::chrono::year_month_day(std::chrono::year(2001) / 1 / 1));

// A moment, counted in seconds from 2001-01-01 00:00 UTC.
struct Date {
  using Interval = std::chrono::duration<double>;

  Interval sinceReferenceDate{0};

  // The present moment by the installed platform's clock.
  static Date now();

  friend Date operator+(Date date, Interval interval) { return {date.sinceReferenceDate + interval}; }
  friend Interval operator-(Date a, Date b) { return a.sinceReferenceDate - b.sinceReferenceDate; }
  auto operator<=>(const Date&) const = default;
};

}  // namespace tarnix

template <>
struct std::hash<tarnix::Date> {
  std::size_t operator()(const tarnix::Date& date) const noexcept {
    return std::hash<double>{}(date.sinceReferenceDate.count());
  }
};
