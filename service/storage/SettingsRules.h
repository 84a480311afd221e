#pragma once

#include <optional>
#include <string>
#include <vector>

#include "service/support/Json.h"

namespace navora::service {

/// A kind of notification and the channel that it takes unless the user chose another.
struct NotificationKind {
  const char* key;
  const char* title;
  const char* defaultChannel;
};

/// What is wrong with a change of settings: the member at fault and a sentence for the user.
struct SettingsProblem {
  std::string field;
  std::string message;
};

/// Which settings there are and which values they may have.
class SettingsRules {
 public:
  static const std::vector<NotificationKind>& notificationKinds();
  static const std::vector<std::string>& locales();

  static Json defaults();

  /// Judges an object of changed settings as a whole: nothing of it may be stored when there is a
  /// problem. Unknown members are a problem.
  static std::optional<SettingsProblem> problem(const Json& changes);

  /// An IANA time zone that this machine knows, e.g. "Europe/Lisbon".
  static bool isTimeZone(const std::string& name);

  /// The zone that dates are shown in: the chosen one, or the system's as the page last reported
  /// it.
  static std::string effectiveTimeZone(const Json& settings);

  /// The first supported locale of an Accept-Language header.
  static std::optional<std::string> detectLocale(const std::string& acceptLanguage);
};

}  // namespace navora::service
