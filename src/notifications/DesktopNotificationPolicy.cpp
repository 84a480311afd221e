#include "notifications/DesktopNotificationPolicy.h"

#include <charconv>
#include <optional>

#include "origin/DesktopOrigin.h"
#include "support/Calendar.h"
#include "support/Text.h"

namespace navora {
namespace {

constexpr std::string_view desktopChannel = "phone";

// Parses exactly two characters, of which the first may be a sign, as a number from 0 to `limit`.
std::optional<int> twoCharacterNumber(std::string_view text, int limit) {
  if (text.size() != 2) return std::nullopt;
  if (text.front() == '+') text.remove_prefix(1);
  int value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  if (value < 0 || value > limit) return std::nullopt;
  return value;
}

std::optional<int> minuteOfDay(std::string_view text) {
  const auto pieces = split(text, ':');
  if (pieces.size() != 2) return std::nullopt;
  const auto hours = twoCharacterNumber(pieces[0], 23);
  const auto minutes = twoCharacterNumber(pieces[1], 59);
  if (!hours || !minutes) return std::nullopt;
  return *hours * 60 + *minutes;
}

bool isWithin(int minute, int start, int end) {
  if (start == end) return false;
  if (start < end) return start <= minute && minute < end;
  return minute >= start || minute < end;
}

std::optional<std::string> channel(const std::string& kind,
                                   const std::map<std::string, std::string>& preferences,
                                   const std::map<std::string, std::string>& defaults) {
  for (const auto* channels : {&preferences, &defaults}) {
    const auto found = channels->find(kind);
    if (found != channels->end()) return found->second;
  }
  return std::nullopt;
}

}  // namespace

bool DesktopNotificationPolicy::sameOrigin(const Url& a, const Url& b) {
  return DesktopOrigin::contains(a, b);
}

bool DesktopNotificationPolicy::isQuiet(std::string_view range, Date at,
                                        std::string_view timeZone) {
  if (range == "off") return false;
  const auto now = Calendar(timeZone).civilTime(at);
  const auto pieces = split(range, '-');
  if (!now || pieces.size() != 2) return true;
  const auto start = minuteOfDay(pieces[0]);
  const auto end = minuteOfDay(pieces[1]);
  if (!start || !end) return true;
  return isWithin(now->hour * 60 + now->minute, *start, *end);
}

bool DesktopNotificationPolicy::shouldDeliver(const Json& item,
                                              const std::map<std::string, std::string>& preferences,
                                              const std::map<std::string, std::string>& defaults,
                                              bool quiet) {
  if (quiet) return false;
  const auto kind = stringMember(item, "kind");
  if (!kind) return false;
  // An item counts as unread and unresolved only if it says so explicitly, and as dismissed only if
  // it says so explicitly.
  if (boolMember(item, "read").value_or(true)) return false;
  if (boolMember(item, "resolved").value_or(true)) return false;
  if (boolMember(item, "dismissed").value_or(false)) return false;
  return channel(*kind, preferences, defaults) == desktopChannel;
}

}  // namespace navora
