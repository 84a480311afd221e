#pragma once

#include <optional>
#include <string>
#include <vector>

#include "service/support/Json.h"

namespace navora::service {

// A kind of notification, and its channel unless the user has chosen another.
struct NotificationKind {
  const char* key;
  const char* title;
  const char* defaultChannel;
};

// Why a change of settings is rejected: the member at fault and a sentence for the user.
struct SettingsProblem {
  std::string field;
  std::string message;
};

// The names of the settings and their permitted values.
class SettingsRules {
 public:
  static const std::vector<NotificationKind>& notificationKinds();
  static const std::vector<std::string>& locales();

  static Json defaults();

  // Checks an object of changed settings as a whole and returns the first problem; an unknown
  // member is one. If there is a problem, nothing of the object may be stored.
  static std::optional<SettingsProblem> problem(const Json& changes);

  // Returns whether `name` is an IANA time zone that this machine knows, such as "Europe/Lisbon".
  static bool isTimeZone(const std::string& name);

  // Returns the zone for dates: the chosen one, or the system's as the page last reported it.
  static std::string effectiveTimeZone(const Json& settings);

  // Returns the first supported locale of an Accept-Language header.
  static std::optional<std::string> detectLocale(const std::string& acceptLanguage);
};

}  // namespace navora::service
