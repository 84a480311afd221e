#pragma once

#include <cstdint>

#include <gio/gio.h>

#include "platform/NotificationCenter.h"

namespace navora {

// What a notification service can do, of that which matters to us.
struct NotificationCapabilities {
  // Reports clicks.
  bool actions = false;
  // Reads the body as markup.
  bool markup = false;
};

// From a reply to GetCapabilities, of type (as).
NotificationCapabilities notificationCapabilities(GVariant* reply);

// The name of the action that a click on the notification itself is.
inline constexpr const char* defaultNotificationAction = "default";

// The arguments of Notify. `replacedNumber` is the service's number of the notification whose place
// this one takes, 0 for none. Floating.
GVariant* notificationMessage(const UserNotification& notification, std::uint32_t replacedNumber,
                              NotificationCapabilities capabilities, bool sound);

}  // namespace navora
