#pragma once

#include <cstdint>
#include <string>

namespace navora::service {

// Milliseconds since 1970-01-01T00:00:00Z.
using Milliseconds = std::int64_t;

Milliseconds currentTime();

// Formats a time as "2026-03-09T08:07:06.005Z".
std::string isoTime(Milliseconds time);

// Returns the UTC date of a time moved by whole days, as "2026-03-09".
std::string isoDate(Milliseconds time, int daysLater = 0);

// Returns whether `text` is a date of the Gregorian calendar in the form "2026-03-09".
bool isIsoDate(const std::string& text);

}  // namespace navora::service
