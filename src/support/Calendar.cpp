#include "support/Calendar.h"

#include <cmath>
#include <exception>
#include <string>

#include <date/tz.h>

namespace navora {
namespace {

// 0001-01-01 and 10000-01-01, both at 00:00 UTC.
constexpr double firstSecond = -62135596800.0;
constexpr double endSecond = 253402300800.0;

const date::time_zone* findZone(std::string_view identifier) {
  try {
    return date::locate_zone(std::string(identifier));
  } catch (const std::exception&) {
    return nullptr;
  }
}

std::optional<date::sys_seconds> wholeSeconds(Date date) {
  const double seconds = std::floor(secondsSince1970(date));
  // Written so that NaN fails the comparison.
  if (!(seconds >= firstSecond && seconds < endSecond)) return std::nullopt;
  return date::sys_seconds(std::chrono::seconds(static_cast<long long>(seconds)));
}

// Calls `function`; returns nullopt if it throws, as the time zone library does on errors.
template <class Function>
auto nulloptOnException(Function function) -> std::optional<decltype(function())> {
  try {
    return function();
  } catch (const std::exception&) {
    return std::nullopt;
  }
}

}  // namespace

Calendar::Calendar(std::string_view timeZone) : zone_(findZone(timeZone)) {}

std::optional<CivilTime> Calendar::civilTime(Date date) const {
  const auto instant = wholeSeconds(date);
  if (!zone_ || !instant) return std::nullopt;
  return nulloptOnException([&] {
    const auto local = zone_->to_local(*instant);
    const auto midnight = date::floor<date::days>(local);
    const date::year_month_day day(midnight);
    const date::hh_mm_ss<std::chrono::seconds> time(local - midnight);
    return CivilTime{static_cast<int>(day.year()),
                     static_cast<int>(static_cast<unsigned>(day.month())),
                     static_cast<int>(static_cast<unsigned>(day.day())),
                     static_cast<int>(time.hours().count()),
                     static_cast<int>(time.minutes().count()),
                     static_cast<int>(time.seconds().count())};
  });
}

std::optional<Date> Calendar::startOfNextDay(Date date) const {
  const auto instant = wholeSeconds(date);
  if (!zone_ || !instant) return std::nullopt;
  return nulloptOnException([&] {
    const auto today = date::floor<date::days>(zone_->to_local(*instant));
    const date::local_seconds midnight = today + date::days(1);
    // `earliest` also selects the instant of the change if the local time does not exist.
    return Date(zone_->to_sys(midnight, date::choose::earliest));
  });
}

}  // namespace navora
