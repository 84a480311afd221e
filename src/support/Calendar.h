#pragma once

#include <optional>
#include <string_view>

#include "support/Date.h"

namespace date {
class time_zone;
}

namespace navora {

// A date and time of day of the Gregorian calendar as clocks show it.
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
// throws. Every operation is absent when the zone is unknown, and for dates outside of the years 1
// to 9999, infinite ones and not-a-number.
class Calendar {
 public:
  // An IANA identifier such as "Europe/Berlin", exactly as the database spells it.
  explicit Calendar(std::string_view timeZone);

  bool isKnown() const { return zone_ != nullptr; }

  std::optional<CivilTime> civilTime(Date date) const;

  // The first instant of the day after the one that contains the date. Where clocks skip midnight
  // that is the instant of the change; where they show it twice, the first of both.
  std::optional<Date> startOfNextDay(Date date) const;

 private:
  // Owned by the time zone library for the life of the process; null for an unknown zone.
  const date::time_zone* zone_;
};

}  // namespace navora
