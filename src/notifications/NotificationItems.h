#pragma once

#include <optional>
#include <string>

#include "platform/NotificationCenter.h"
#include "support/Json.h"
#include "support/Url.h"

namespace navora {

// Returns the page of the origin that an item of the service's list leads to, or nullopt if the
// item names an address outside the origin.
std::optional<Url> notificationDestination(const Json& item, const Url& origin);

// The texts of an item, as the service wrote them.
struct NotificationContent {
  // Absent for items that are titled with the product's name.
  std::optional<std::string> title;
  std::string body;
  // The item's destination.
  std::string url;

  bool operator==(const NotificationContent&) const = default;
};
NotificationContent notificationContent(const Json& item, const Url& destination);

// Makes the desktop notification for the item `id`, in the interface's current language.
UserNotification userNotification(const std::string& id, NotificationContent content);

// Makes the notification that the user requests to try notifications out.
UserNotification testNotification(const Url& origin);

}  // namespace navora
