#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "support/Json.h"

namespace navora {

// What the service answers to a poll. Each is read as a whole or not at all; members that are not
// named here do not matter.

// Of "/api/auth/me": the id of the user who is signed in.
std::optional<std::string> readUserId(const Json& reply);

// Of "/api/settings".
struct NotificationSettings {
  // From the kind of an item to its channel.
  std::map<std::string, std::string> preferences;
  std::string quietHours;
  std::string timeZone;

  static std::optional<NotificationSettings> read(const Json& reply);
  bool operator==(const NotificationSettings&) const = default;
};

// Of "/api/notifications".
struct NotificationList {
  // Objects, the newest first.
  std::vector<Json> items;
  // From the kind of an item to its channel; of kinds that are named twice the last one counts.
  std::map<std::string, std::string> defaults;

  // Takes the items out of the reply.
  static std::optional<NotificationList> read(Json reply);
};

}  // namespace navora
