#include "service/support/Time.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <regex>

namespace navora::service {
namespace {

std::chrono::sys_time<std::chrono::milliseconds> timePoint(Milliseconds time) {
  return std::chrono::sys_time<std::chrono::milliseconds>(std::chrono::milliseconds(time));
}

std::string dateText(std::chrono::sys_days day) {
  const std::chrono::year_month_day date(day);
  std::array<char, 40> text{};
  std::snprintf(text.data(), text.size(), "%04d-%02u-%02u", static_cast<int>(date.year()),
                static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()));
  return text.data();
}

}  // namespace

Milliseconds currentTime() {
  return std::chrono::duration_cast<std::chrono::milliseconds>(
             std::chrono::system_clock::now().time_since_epoch())
      .count();
}

std::string isoTime(Milliseconds time) {
  const auto point = timePoint(time);
  const auto day = std::chrono::floor<std::chrono::days>(point);
  const std::chrono::hh_mm_ss clock(point - day);
  std::array<char, 60> text{};
  std::snprintf(text.data(), text.size(), "T%02d:%02d:%02d.%03dZ",
                static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
                static_cast<int>(clock.seconds().count()),
                static_cast<int>(clock.subseconds().count()));
  return dateText(day) + text.data();
}

std::string isoDate(Milliseconds time, int daysLater) {
  return dateText(std::chrono::floor<std::chrono::days>(timePoint(time)) +
                  std::chrono::days(daysLater));
}

bool isIsoDate(const std::string& text) {
  static const std::regex form("([0-9]{4})-([0-9]{2})-([0-9]{2})");
  std::smatch match;
  if (!std::regex_match(text, match, form)) return false;
  return std::chrono::year_month_day(std::chrono::year(std::stoi(match[1])),
                                     std::chrono::month(static_cast<unsigned>(std::stoi(match[2]))),
                                     std::chrono::day(static_cast<unsigned>(std::stoi(match[3]))))
      .ok();
}

}  // namespace navora::service
