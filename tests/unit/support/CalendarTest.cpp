#include <limits>

#include <gtest/gtest.h>

#include "support/Calendar.h"

namespace navora {
namespace {

// Returns a date in UTC, computed by the standard library.
Date utc(int year, unsigned month, unsigned day, int hour = 0, int minute = 0, double second = 0) {
  const std::chrono::sys_days days =
      std::chrono::year(year) / std::chrono::month(month) / std::chrono::day(day);
  return Date(days.time_since_epoch()) + std::chrono::hours(hour) + std::chrono::minutes(minute) +
         std::chrono::duration<double>(second);
}

TEST(Date, ConvertsToAndFromSecondsSince1970) {
  EXPECT_EQ(secondsSince1970(dateFromSecondsSince1970(1.5)), 1.5);
  EXPECT_EQ(secondsSince1970(utc(1970, 1, 2)), 86400.0);
}

TEST(CalendarNextDay, IsOneSecondAwayOneSecondBeforeMidnight) {
  const Calendar berlin("Europe/Berlin");
  EXPECT_EQ(berlin.startOfNextDay(utc(2024, 1, 15, 22, 59, 59)), utc(2024, 1, 15, 23));
  EXPECT_EQ(berlin.startOfNextDay(utc(2024, 1, 15, 22, 59, 59.999)), utc(2024, 1, 15, 23));
}

TEST(CalendarNextDay, IsAWholeDayAwayAtMidnight) {
  const Calendar berlin("Europe/Berlin");
  EXPECT_EQ(berlin.startOfNextDay(utc(2024, 1, 15, 23)), utc(2024, 1, 16, 23));
}

TEST(CalendarNextDay, FollowsDaysOf23And25Hours) {
  const Calendar berlin("Europe/Berlin");
  EXPECT_EQ(berlin.startOfNextDay(utc(2024, 3, 30, 23)), utc(2024, 3, 31, 22));
  EXPECT_EQ(berlin.startOfNextDay(utc(2024, 10, 26, 22)), utc(2024, 10, 27, 23));
}

TEST(CalendarNextDay, IsTheInstantOfTheChangeIfClocksSkipMidnight) {
  EXPECT_EQ(Calendar("America/Sao_Paulo").startOfNextDay(utc(2017, 10, 14, 12)),
            utc(2017, 10, 15, 3));
  EXPECT_EQ(Calendar("Asia/Beirut").startOfNextDay(utc(2024, 3, 30, 12)), utc(2024, 3, 30, 22));
}

TEST(CalendarNextDay, FollowsTheRepeatedHourIfClocksFallBackAtMidnight) {
  const Calendar saoPaulo("America/Sao_Paulo");
  EXPECT_EQ(saoPaulo.startOfNextDay(utc(2018, 2, 18, 1, 30)), utc(2018, 2, 18, 3));
  EXPECT_EQ(saoPaulo.startOfNextDay(utc(2018, 2, 18, 2, 30)), utc(2018, 2, 18, 3));
}

TEST(CalendarNextDay, IsTheFirstMidnightIfItOccursTwice) {
  // The clocks are set back from 01:00 to 00:00.
  EXPECT_EQ(Calendar("America/Havana").startOfNextDay(utc(2023, 11, 4, 12)), utc(2023, 11, 5, 4));
}

TEST(CalendarNextDay, SkipsADayThatDoesNotExist) {
  // Samoa skipped 2011-12-30.
  EXPECT_EQ(Calendar("Pacific/Apia").startOfNextDay(utc(2011, 12, 29, 12)), utc(2011, 12, 30, 10));
}

TEST(CalendarNextDay, HandlesTheEndsOfFebruaryAndOfTheYear) {
  const Calendar zone("UTC");
  EXPECT_EQ(zone.startOfNextDay(utc(2024, 2, 28, 12)), utc(2024, 2, 29));
  EXPECT_EQ(zone.startOfNextDay(utc(2023, 2, 28, 12)), utc(2023, 3, 1));
  EXPECT_EQ(zone.startOfNextDay(utc(2023, 12, 31, 12)), utc(2024, 1, 1));
}

TEST(CalendarCivilTime, IsTheLocalTime) {
  EXPECT_EQ(Calendar("Asia/Kathmandu").civilTime(utc(2024, 5, 6, 18, 30, 7.9)),
            (CivilTime{2024, 5, 7, 0, 15, 7}));
  EXPECT_EQ(Calendar("America/New_York").civilTime(utc(2024, 7, 1, 2)),
            (CivilTime{2024, 6, 30, 22, 0, 0}));
  EXPECT_EQ(Calendar("UTC").civilTime(utc(1970, 1, 1, 0, 0, -0.5)),
            (CivilTime{1969, 12, 31, 23, 59, 59}));
}

TEST(Calendar, ReturnsNulloptForAnUnknownZone) {
  for (const std::string name : {"", "Mars/Olympus", "europe/berlin", "../../etc/passwd", "Europe",
                                 "Europe/Berlin ", "+03:00", "zone.tab"}) {
    const Calendar calendar(name);
    EXPECT_EQ(calendar.civilTime(utc(2024, 1, 1)), std::nullopt) << name;
    EXPECT_EQ(calendar.startOfNextDay(utc(2024, 1, 1)), std::nullopt) << name;
  }
  EXPECT_EQ(Calendar(std::string_view("UTC\0", 4)).civilTime(utc(2024, 1, 1)), std::nullopt);
}

TEST(Calendar, AcceptsLinkedNames) {
  EXPECT_TRUE(Calendar("UTC").civilTime(utc(2024, 1, 1)));
  EXPECT_TRUE(Calendar("GMT").civilTime(utc(2024, 1, 1)));
  EXPECT_TRUE(Calendar("Asia/Calcutta").civilTime(utc(2024, 1, 1)));
}

TEST(Calendar, ReturnsNulloptOutsideTheYears1To9999) {
  const double infinity = std::numeric_limits<double>::infinity();
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double beforeFirst = secondsSince1970(utc(1, 1, 1)) - 1;
  const double behindLast = secondsSince1970(utc(10000, 1, 1));
  const Calendar zone("Europe/Berlin");
  for (const double seconds :
       {infinity, -infinity, nan, 1e300, -1e300, 1e18, beforeFirst, behindLast}) {
    EXPECT_EQ(zone.civilTime(dateFromSecondsSince1970(seconds)), std::nullopt) << seconds;
    EXPECT_EQ(zone.startOfNextDay(dateFromSecondsSince1970(seconds)), std::nullopt) << seconds;
  }
  EXPECT_TRUE(zone.startOfNextDay(dateFromSecondsSince1970(beforeFirst + 1)));
  EXPECT_TRUE(zone.startOfNextDay(dateFromSecondsSince1970(behindLast - 1)));
}

}  // namespace
}  // namespace navora
