#pragma once

#include <chrono>
#include <string>

namespace navora {

// A point in time, with fractions of a second.
using Date = std::chrono::time_point<std::chrono::system_clock, std::chrono::duration<double>>;

// Returns the seconds since 1970-01-01 00:00 UTC, without leap seconds.
constexpr double secondsSince1970(Date date) {
  return date.time_since_epoch().count();
}

constexpr Date dateFromSecondsSince1970(double seconds) {
  return Date(std::chrono::duration<double>(seconds));
}

// Returns the date in UTC, rounded down to seconds, as in "2026-11-21T04:14:12Z".
std::string iso8601(Date date);

}  // namespace navora
