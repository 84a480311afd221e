#pragma once

#include <map>
#include <string>
#include <string_view>

#include "support/Date.h"
#include "support/Json.h"
#include "support/Url.h"

namespace navora {

// Decides which items of the service's list become desktop notifications. Every rule is a pure
// function of its arguments.
class DesktopNotificationPolicy {
 public:
  // Returns whether `a`, the URL under test, belongs to the origin `b`: the rule of
  // DesktopOrigin::contains(a, b), under the name that this policy is known by.
  static bool sameOrigin(const Url& a, const Url& b);

  // Returns whether the quiet hours are in force. `range` is "off" or "HH:MM-HH:MM" in the zone
  // with the IANA identifier `timeZone`; the start is inclusive, the end exclusive, and the range
  // may cross midnight. Returns true for a range or zone that cannot be read: silence is the safe
  // error.
  static bool isQuiet(std::string_view range, Date at, std::string_view timeZone);

  // Returns whether an item of the service's list is unread, unresolved, not dismissed and meant
  // for this device. `preferences` and `defaults` map an item's kind to its channel; `preferences`
  // take precedence.
  static bool shouldDeliver(const Json& item, const std::map<std::string, std::string>& preferences,
                            const std::map<std::string, std::string>& defaults, bool quiet);
};

}  // namespace navora
