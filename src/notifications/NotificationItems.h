#pragma once

#include <optional>
#include <string>

#include "platform/NotificationCenter.h"
#include "support/Json.h"
#include "support/Url.h"

namespace navora {

// Where an item of the service's list leads: a page of the origin; none if the item names one
// elsewhere.
std::optional<Url> notificationDestination(const Json& item, const Url& origin);

// What an item has to say, in its own words.
struct NotificationContent {
  // Absent if it is the product's name.
  std::optional<std::string> title;
  std::string body;
  // Where it leads.
  std::string url;

  bool operator==(const NotificationContent&) const = default;
};
NotificationContent notificationContent(const Json& item, const Url& destination);

// What the desktop shows of the item with this id, in the interface's language of the moment.
UserNotification userNotification(const std::string& id, NotificationContent content);

// What the desktop shows when the user tries its notifications out.
UserNotification testNotification(const Url& origin);

}  // namespace navora
