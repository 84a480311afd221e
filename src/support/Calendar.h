#pragma once

#include <chrono>
#include <optional>
#include <string_view>

#include "support/Date.h"

namespace date {
class time_zone;
}

namespace navora {

// A local date and time of the Gregorian calendar.
struct CivilTime {
  int year;
  int month;   // 1 to 12
  int day;     // 1 to 31
  int hour;    // 0 to 23
  int minute;  // 0 to 59
  int second;  // 0 to 59

  bool operator==(const CivilTime&) const = default;
};

// The Gregorian calendar in one time zone. Cheap to copy; never throws. Every function returns
// nullopt if the zone is unknown, and for dates outside the years 1 to 9999, infinities and NaN.
class Calendar {
 public:
  // `timeZone` is an IANA identifier such as "Europe/Berlin", in the exact spelling of the system's
  // time zone database, or one of the fixed offsets that Foundation's TimeZone(identifier:) takes:
  // "GMT" or "UTC" with an offset east of Greenwich, such as "GMT+3", "GMT+0330" or "UTC-05:30".
  explicit Calendar(std::string_view timeZone);

  std::optional<CivilTime> civilTime(Date date) const;

  // Returns the first instant of the day after the one that contains `date`: if the clocks skip
  // midnight, the instant of the change; if midnight occurs twice, the first one.
  std::optional<Date> startOfNextDay(Date date) const;

 private:
  std::optional<std::chrono::sys_seconds> instantOf(Date date) const;

  // Owned by the time zone library for the life of the process; null for a zone that is not in the
  // database.
  const date::time_zone* zone_;
  // East of Greenwich; for a zone that is not in the database.
  std::optional<std::chrono::minutes> offset_;
};

}  // namespace navora
