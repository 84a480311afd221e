#include "support/Calendar.h"

#include <cmath>
#include <exception>
#include <string>
#include <utility>

#include <date/tz.h>

namespace navora {
namespace {

// 0001-01-01 and 10000-01-01, both at 00:00 UTC.
constexpr double firstSecond = -62135596800.0;
constexpr double endSecond = 253402300800.0;

const date::time_zone* findZone(std::string_view identifier) {
  // Debian links the machine's own zone into the database; that names no zone.
  if (identifier == "localtime") return nullptr;
  try {
    return date::locate_zone(std::string(identifier));
  } catch (const std::exception&) {
    return nullptr;
  }
}

std::optional<int> numberFrom(std::string_view digits) {
  int number = 0;
  for (const char digit : digits) {
    if (digit < '0' || digit > '9') return std::nullopt;
    number = 10 * number + (digit - '0');
  }
  return number;
}

// Divides H, HH, HHMM, H:MM, HH:MM, H.MM or HH.MM into hours and minutes.
std::pair<std::string_view, std::string_view> offsetParts(std::string_view offset) {
  const std::size_t separator = offset.find_first_of(":.");
  if (separator != std::string_view::npos)
    return {offset.substr(0, separator), offset.substr(separator + 1)};
  if (offset.size() == 4) return {offset.substr(0, 2), offset.substr(2)};
  return {offset, "00"};
}

// Parses "GMT" or "UTC", alone or with an offset of at most 18 hours.
std::optional<std::chrono::minutes> offsetFrom(std::string_view identifier) {
  const std::string_view name = identifier.substr(0, 3);
  if (name != "GMT" && name != "UTC") return std::nullopt;
  const std::string_view rest = identifier.substr(name.size());
  if (rest.empty()) return std::chrono::minutes::zero();
  if (rest.front() != '+' && rest.front() != '-') return std::nullopt;
  const auto [hourDigits, minuteDigits] = offsetParts(rest.substr(1));
  if (hourDigits.empty() || hourDigits.size() > 2 || minuteDigits.size() != 2) return std::nullopt;
  const auto hours = numberFrom(hourDigits);
  const auto minutes = numberFrom(minuteDigits);
  if (!hours || !minutes || *minutes > 59) return std::nullopt;
  const auto offset = std::chrono::hours(*hours) + std::chrono::minutes(*minutes);
  if (offset > std::chrono::hours(18)) return std::nullopt;
  return rest.front() == '-' ? -offset : offset;
}

std::optional<date::sys_seconds> wholeSeconds(Date date) {
  const double seconds = std::floor(secondsSince1970(date));
  // Written so that NaN fails the comparison.
  if (!(seconds >= firstSecond && seconds < endSecond)) return std::nullopt;
  return date::sys_seconds(std::chrono::seconds(static_cast<long long>(seconds)));
}

date::local_seconds withOffset(date::sys_seconds instant, std::chrono::minutes offset) {
  return date::local_seconds(instant.time_since_epoch() + offset);
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

Calendar::Calendar(std::string_view timeZone)
    : zone_(findZone(timeZone)), offset_(zone_ ? std::nullopt : offsetFrom(timeZone)) {}

std::optional<std::chrono::sys_seconds> Calendar::instantOf(Date date) const {
  if (!zone_ && !offset_) return std::nullopt;
  return wholeSeconds(date);
}

std::optional<CivilTime> Calendar::civilTime(Date date) const {
  const auto instant = instantOf(date);
  if (!instant) return std::nullopt;
  return nulloptOnException([&] {
    const auto local = zone_ ? zone_->to_local(*instant) : withOffset(*instant, *offset_);
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
  const auto instant = instantOf(date);
  if (!instant) return std::nullopt;
  return nulloptOnException([&] {
    const auto local = zone_ ? zone_->to_local(*instant) : withOffset(*instant, *offset_);
    const date::local_seconds midnight = date::floor<date::days>(local) + date::days(1);
    if (!zone_) return Date(midnight.time_since_epoch() - *offset_);
    // `earliest` also selects the instant of the change if the local time does not exist.
    return Date(zone_->to_sys(midnight, date::choose::earliest));
  });
}

}  // namespace navora
