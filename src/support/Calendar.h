#pragma once

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

// The Gregorian calendar in one time zone of the system's time zone database. Cheap to copy; never
// throws. Every function returns nullopt if the zone is unknown, and for dates outside the years 1
// to 9999, infinities and NaN.
class Calendar {
 public:
  // `timeZone` is an IANA identifier such as "Europe/Berlin", in the database's exact spelling.
  explicit Calendar(std::string_view timeZone);

  std::optional<CivilTime> civilTime(Date date) const;

  // Returns the first instant of the day after the one that contains `date`: if the clocks skip
  // midnight, the instant of the change; if midnight occurs twice, the first one.
  std::optional<Date> startOfNextDay(Date date) const;

 private:
  // Owned by the time zone library for the life of the process; null for an unknown zone.
  const date::time_zone* zone_;
};

}  // namespace navora
