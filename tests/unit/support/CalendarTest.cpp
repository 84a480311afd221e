#include <limits>
#include <optional>
#include <string>

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

// The minutes after midnight UTC at noon UTC, in the zone.
std::optional<int> minuteAtNoon(const std::string& zone) {
  const auto time = Calendar(zone).civilTime(utc(2024, 5, 6, 12));
  if (!time) return std::nullopt;
  return (time->day - 6) * 1440 + time->hour * 60 + time->minute;
}

TEST(Calendar, KnowsFixedOffsetsFromGreenwich) {
  EXPECT_EQ(minuteAtNoon("GMT+3"), 15 * 60);
  EXPECT_EQ(minuteAtNoon("GMT-3"), 9 * 60);
  EXPECT_EQ(minuteAtNoon("GMT+03"), 15 * 60);
  EXPECT_EQ(minuteAtNoon("GMT+0300"), 15 * 60);
  EXPECT_EQ(minuteAtNoon("GMT-0330"), 8 * 60 + 30);
  EXPECT_EQ(minuteAtNoon("GMT+5:45"), 17 * 60 + 45);
  EXPECT_EQ(minuteAtNoon("UTC+05:30"), 17 * 60 + 30);
  EXPECT_EQ(minuteAtNoon("UTC-05.30"), 6 * 60 + 30);
  EXPECT_EQ(minuteAtNoon("UTC+14"), 26 * 60);
  EXPECT_EQ(minuteAtNoon("GMT+18:00"), 30 * 60);
  EXPECT_EQ(minuteAtNoon("GMT-1800"), -6 * 60);
  EXPECT_EQ(minuteAtNoon("GMT+0"), 12 * 60);
  EXPECT_EQ(minuteAtNoon("UTC-00:00"), 12 * 60);
  // The database's own names with the opposite sign.
  EXPECT_EQ(minuteAtNoon("Etc/GMT+3"), 9 * 60);
}

TEST(Calendar, DoesNotKnowOtherOffsets) {
  for (const std::string name :
       {"GMT+",    "GMT3",     "GMT +3",     "GMT+3 ",   "gmt+3",        "Gmt+3",
        "GMT+19",  "GMT+1801", "GMT+18:01",  "GMT+0360", "GMT+03:60",    "GMT+003",
        "GMT+030", "GMT+03:0", "GMT+03:000", "GMT+:30",  "GMT+03:00:00", "GMT+0300x",
        "GMT+0x",  "GMT++3",   "UT+3",       "Z",        "EST+3",        "<+03>-3"}) {
    EXPECT_EQ(minuteAtNoon(name), std::nullopt) << name;
  }
  EXPECT_EQ(Calendar(std::string_view("GMT+3\0", 6)).civilTime(utc(2024, 1, 1)), std::nullopt);
}

TEST(CalendarNextDay, BeginsAtMidnightOfTheFixedOffset) {
  const Calendar east("GMT+0300");
  EXPECT_EQ(east.startOfNextDay(utc(2024, 1, 15, 20, 59, 59.5)), utc(2024, 1, 15, 21));
  EXPECT_EQ(east.startOfNextDay(utc(2024, 1, 15, 21)), utc(2024, 1, 16, 21));
  EXPECT_EQ(Calendar("UTC-05:30").startOfNextDay(utc(2024, 2, 29, 5, 29)), utc(2024, 2, 29, 5, 30));
}

// Debian's database has a link of this name to the machine's own zone.
TEST(Calendar, DoesNotKnowTheMachinesOwnZoneByName) {
  EXPECT_EQ(minuteAtNoon("localtime"), std::nullopt);
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
