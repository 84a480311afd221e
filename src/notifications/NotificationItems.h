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

// What the desktop shows of the item with this id.
UserNotification userNotification(const Json& item, const std::string& id, const Url& destination);

// What the desktop shows when the user tries its notifications out.
UserNotification testNotification(const Url& origin);

}  // namespace navora
