#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "support/Json.h"

namespace navora {

// The service's replies to a poll. Each is read all or nothing; members not named here are ignored.

// Reads the reply to "/api/auth/me": the id of the user who is signed in.
std::optional<std::string> readUserId(const Json& reply);

// The reply to "/api/settings".
struct NotificationSettings {
  // Maps an item's kind to its channel.
  std::map<std::string, std::string> preferences;
  std::string quietHours;
  std::string timeZone;

  static std::optional<NotificationSettings> read(const Json& reply);
  bool operator==(const NotificationSettings&) const = default;
};

// The reply to "/api/notifications".
struct NotificationList {
  // JSON objects, the newest first.
  std::vector<Json> items;
  // Maps an item's kind to its channel. If the reply lists a kind twice, the last entry counts.
  std::map<std::string, std::string> defaults;

  // Moves the items out of the reply.
  static std::optional<NotificationList> read(Json reply);
};

}  // namespace navora
