#pragma once

#include <map>
#include <string>
#include <string_view>

#include "support/Date.h"
#include "support/Json.h"
#include "support/Url.h"

namespace navora {

// Decides what becomes a notification of the desktop. Every rule is a pure function of its
// arguments.
class DesktopNotificationPolicy {
 public:
  // Whether both have the same scheme, host and effective port, and `a`, the one under test, has no
  // credentials.
  static bool sameOrigin(const Url& a, const Url& b);

  // Whether the quiet hours are in force. `range` is "off" or "HH:MM-HH:MM" in the zone with the
  // IANA identifier `timeZone`: the start minute is quiet, the end minute is not, and a range may
  // pass midnight. Settings that cannot be read are quiet: silence is the safe mistake.
  static bool isQuiet(std::string_view range, Date at, std::string_view timeZone);

  // Whether an item of the service's list is new to the user and wanted on the screen.
  // `preferences` and `defaults` map kinds of item to channels; what the user prefers counts first.
  static bool shouldDeliver(const Json& item, const std::map<std::string, std::string>& preferences,
                            const std::map<std::string, std::string>& defaults, bool quiet);
};

}  // namespace navora
